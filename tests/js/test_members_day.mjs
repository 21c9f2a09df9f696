// A day in the village, lived with the client that hosted projects are used with: what that client
// expects of a hosted project, it finds in the local service.
import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { after, before, test } from 'node:test';
import { LocalService } from './LocalService.mjs';

const modules = createRequire(`${process.env.AMORVELLE_NODE_MODULES}/`);
const { createClient } = modules('@supabase/supabase-js');

/** A client that keeps nothing on this machine and starts no timers. */
function clientOf(service, key = service.publishable) {
    return createClient(service.url, key, {
        auth: { persistSession: false, autoRefreshToken: false, detectSessionInUrl: false },
    });
}

function unwrapped({ data, error }) {
    assert.equal(error, null);
    return data;
}

const password = 'fontaine-du-lavoir';
let service;
let visitor;
let anne;

before(async () => {
    service = await LocalService.start();
    visitor = clientOf(service);
    anne = clientOf(service);
});
after(async () => assert.equal(await service.stop(), 0, service.output));

test('aVisitorReadsTheListInItsOrder', async () => {
    const rows = unwrapped(await visitor.from('events').select('id,titre,starts_at')
        .order('starts_at', { ascending: true, nullsFirst: false }));
    assert.ok(rows.length > 50);
    const starts = rows.map((row) => row.starts_at).filter((start) => start !== null);
    assert.deepEqual(starts, [...starts].sort());
    assert.equal(rows.at(-1).starts_at, null);
});

test('aVisitorCountsWithoutReading', async () => {
    const { data, count, error, status } =
        await visitor.from('events').select('*', { count: 'exact', head: true });
    assert.equal(error, null);
    assert.equal(status, 200);
    assert.equal(data, null);
    assert.ok(count > 50);
    const page = await visitor.from('events').select('id', { count: 'exact' }).order('id').range(10, 14);
    assert.equal(page.status, 206);
    assert.equal(page.count, count);
    assert.equal(page.data.length, 5);
});

test('aVisitorSearches', async () => {
    const titles = async (query) => unwrapped(await query).map((row) => row.titre).sort();
    const events = () => visitor.from('events').select('titre');
    assert.deepEqual(await titles(events().ilike('titre', 'BAL %')), ['Bal folk']);
    assert.deepEqual(await titles(events().ilike('titre', '%ÉTOILES%')), ['Veillée aux étoiles']);
    assert.deepEqual(await titles(events().or('titre.eq.Bal folk,and(titre.like.Soir*,lieu.eq."Café de la Place")')),
        ['Bal folk', 'Soirée jeux']);
    assert.deepEqual(await titles(events().in('titre', ['Yoga doux', 'Bal folk', 'a,"b"'])),
        ['Bal folk', 'Yoga doux']);
    assert.deepEqual(await titles(events().is('starts_at', null).not('heure_texte', 'is', null)),
        ['Soirée cabaret']);
    assert.deepEqual(await titles(events().contains('tags', ['Repas', 'Jeune public', 'Spectacle'])),
        ['Marché des artisans']);
    assert.deepEqual(await titles(events().match({ titre: 'Bal folk', lieu: 'La Grange' })), ['Bal folk']);
});

test('aVisitorAsksForOneEvent', async () => {
    const found = await visitor.from('events').select('titre').eq('titre', 'Bal folk').single();
    assert.deepEqual(unwrapped(found), { titre: 'Bal folk' });
    const none = await visitor.from('events').select('titre').eq('titre', 'Rien').single();
    assert.equal(none.status, 406);
    assert.equal(none.error.code, 'PGRST116');
    assert.equal(none.error.details, 'The result contains 0 rows');
    const maybe = await visitor.from('events').select('titre').eq('titre', 'Rien').maybeSingle();
    assert.equal(unwrapped(maybe), null);
});

test('aVisitorWritesNothing', async () => {
    const added = await visitor.from('events').insert({ titre: 'X' });
    assert.equal(added.status, 401);
    assert.equal(added.error.code, '42501');
    const { data, error } = await visitor.auth.getUser();
    assert.equal(data.user, null);
    assert.ok(error);
});

test('aMistakeIsNamed', async () => {
    const table = await visitor.from('recettes').select();
    assert.equal(table.status, 404);
    assert.equal(table.error.code, 'PGRST205');
    const column = await visitor.from('events').select('couleur');
    assert.equal(column.status, 400);
    assert.equal(column.error.code, '42703');
});

test('aNewMemberIsSignedInAndKnown', async () => {
    const data = unwrapped(await anne.auth.signUp({
        email: 'Anne@village.example', password, options: { data: { prenom: 'Anne', couleur: null } },
    }));
    assert.equal(data.user.email, 'anne@village.example');
    assert.equal(data.user.user_metadata.prenom, 'Anne');
    assert.equal(data.user.user_metadata.couleur, null);
    assert.equal(data.user.user_metadata.email_verified, true);
    assert.equal(data.user.identities.length, 1);
    assert.equal(data.session.token_type, 'bearer');
    assert.equal(unwrapped(await anne.auth.getUser()).user.id, data.user.id);
});

test('aMemberAddsChangesAndRemovesAnEvent', async () => {
    const added = unwrapped(await anne.from('events')
        .insert({ titre: 'Fête d’été', tags: ['Repas'], starts_at: '2026-06-21T18:00:00Z' }).select().single());
    assert.equal(added.user_id, (await anne.auth.getSession()).data.session.user.id);
    assert.equal(added.starts_at, '2026-06-21T18:00:00+00:00');

    const changed = await anne.from('events').update({ lieu: 'Pré' }).eq('id', added.id).select('titre,lieu');
    assert.deepEqual(unwrapped(changed), [{ titre: 'Fête d’été', lieu: 'Pré' }]);
    const silent = await anne.from('events').update({ lieu: 'Pré' }, { count: 'exact' }).eq('id', added.id);
    assert.equal(silent.status, 204);
    assert.equal(silent.count, 1);

    const removed = await anne.from('events').delete({ count: 'exact' }).eq('id', added.id);
    assert.equal(removed.error, null);
    assert.equal(removed.count, 1);
    assert.deepEqual(unwrapped(await anne.from('events').select().eq('id', added.id)), []);
});

test('aMemberAddsSeveralAtOnce', async () => {
    // The client names the columns in the address, in quotation marks.
    const rows = unwrapped(await anne.from('events')
        .insert([{ titre: 'Un', lieu: 'Pré' }, { titre: 'Deux' }]).select('titre,lieu').order('titre'));
    assert.deepEqual(rows.map((row) => row.lieu).sort(), ['Pré', null].sort());
});

test('theEventsOfOthersStayAsTheyAre', async () => {
    const changed = await anne.from('events').update({ titre: 'X' }).eq('titre', 'Bal folk').select();
    assert.deepEqual(unwrapped(changed), []);
    const whole = await anne.from('events').delete();
    assert.equal(whole.status, 400);
    assert.equal(whole.error.code, '21000');
});

test('aMemberWhoAddsTooMuchIsToldToWait', async () => {
    const eve = clientOf(service);
    unwrapped(await eve.auth.signUp({ email: 'eve@village.example', password }));
    const many = await eve.from('events').insert(Array.from({ length: 100 }, () => ({ titre: 'X' })));
    assert.equal(many.status, 429);
    assert.match(many.error.message, /60 événements par heure/);
    assert.equal((await eve.from('events').select('*', { count: 'exact', head: true }).eq('titre', 'X')).count, 0);
});

test('aWrongPasswordIsToldByItsCode', async () => {
    const { error } = await clientOf(service).auth
        .signInWithPassword({ email: 'anne@village.example', password: 'autre chose' });
    assert.equal(error.code, 'invalid_credentials');
    assert.equal(error.status, 400);
    assert.equal(error.message, 'Invalid login credentials');
    const weak = await clientOf(service).auth.signUp({ email: 'zoe@village.example', password: '12345' });
    assert.equal(weak.error.code, 'weak_password');
    assert.deepEqual(weak.error.reasons, ['length']);
    const again = await clientOf(service).auth.signUp({ email: 'anne@village.example', password });
    assert.equal(again.error.code, 'user_already_exists');
});

test('aSessionGoesOnWithItsRefreshToken', async () => {
    const before = (await anne.auth.getSession()).data.session;
    const after = unwrapped(await anne.auth.refreshSession()).session;
    assert.notEqual(after.refresh_token, before.refresh_token);
    assert.equal(after.user.id, before.user.id);
});

test('aMemberChangesWhatIsKnownOfHer', async () => {
    const other = clientOf(service);
    unwrapped(await other.auth.signInWithPassword({ email: 'anne@village.example', password }));
    const { user } = unwrapped(await anne.auth.updateUser({ data: { prenom: null, rue: 'du Four' } }));
    assert.equal(user.user_metadata.rue, 'du Four');
    assert.ok(!('prenom' in user.user_metadata));
    const same = await anne.auth.updateUser({ password });
    assert.equal(same.error.code, 'same_password');
    unwrapped(await anne.auth.updateUser({ password: `${password}-2` }));
    // Whoever knew the old password is out.
    assert.equal((await other.auth.getUser()).error.name, 'AuthSessionMissingError');
    assert.equal(unwrapped(await anne.auth.getUser()).user.email, 'anne@village.example');
    unwrapped(await other.auth.signInWithPassword({ email: 'anne@village.example', password: `${password}-2` }));
});

test('aForgottenPasswordIsReplaced', async () => {
    const forgetful = clientOf(service);
    unwrapped(await forgetful.auth.resetPasswordForEmail('anne@village.example'));
    const mail = service.mails().at(-1);
    assert.deepEqual([mail.to, mail.type], ['anne@village.example', 'recovery']);
    const { session } = unwrapped(await forgetful.auth.verifyOtp({ token_hash: mail.token, type: 'recovery' }));
    assert.equal(session.user.email, 'anne@village.example');
    unwrapped(await forgetful.auth.updateUser({ password: 'une-troisieme' }));
    unwrapped(await clientOf(service).auth.signInWithPassword({ email: 'anne@village.example', password: 'une-troisieme' }));
    const used = await forgetful.auth.verifyOtp({ token_hash: mail.token, type: 'recovery' });
    assert.equal(used.error.code, 'otp_expired');
    // A second mail has to wait, and nobody learns who has an account.
    assert.equal((await forgetful.auth.resetPasswordForEmail('anne@village.example')).error.code,
        'over_email_send_rate_limit');
    assert.equal((await forgetful.auth.resetPasswordForEmail('personne@village.example')).error, null);
});

test('aMemberMovesToAnotherAddress', async () => {
    const paul = clientOf(service);
    unwrapped(await paul.auth.signUp({ email: 'paul@village.example', password }));
    const taken = await paul.auth.updateUser({ email: 'anne@village.example' });
    assert.equal(taken.error.code, 'email_exists');
    const { user } = unwrapped(await paul.auth.updateUser({ email: 'paul2@village.example' }));
    assert.equal(user.email, 'paul@village.example');
    assert.equal(user.new_email, 'paul2@village.example');
    const mail = service.mails().at(-1);
    assert.deepEqual([mail.to, mail.type], ['paul2@village.example', 'email_change']);
    unwrapped(await paul.auth.verifyOtp({ token_hash: mail.token, type: 'email_change' }));
    assert.equal(unwrapped(await paul.auth.getUser()).user.email, 'paul2@village.example');
});

test('aLinkInAMailLeadsBackToThePageThatAskedForIt', async () => {
    const page = 'http://localhost:5173/nouveau-mot-de-passe?x=1';
    unwrapped(await visitor.auth.resetPasswordForEmail('eve@village.example', { redirectTo: page }));
    const { link } = service.mails().at(-1);
    const answer = await fetch(link, { redirect: 'manual' });
    assert.equal(answer.status, 303);
    const [before, fragment] = answer.headers.get('location').split('#');
    assert.equal(before, page);
    const session = new URLSearchParams(fragment);
    assert.equal(session.get('type'), 'recovery');
    const eve = clientOf(service);
    const { user } = unwrapped(await eve.auth.setSession({
        access_token: session.get('access_token'), refresh_token: session.get('refresh_token'),
    }));
    assert.equal(user.email, 'eve@village.example');
    // Followed once more, it leads there with the reason.
    const again = await fetch(link, { redirect: 'manual' });
    assert.match(again.headers.get('location'), /#error=access_denied&error_code=otp_expired&/);

    // A page of the internet is no place for a session.
    unwrapped(await visitor.auth.resetPasswordForEmail('camille@morvelle.example',
        { redirectTo: 'https://localhost.example.org/' }));
    assert.doesNotMatch(service.mails().at(-1).link, /redirect_to/);
    assert.equal((await fetch(service.mails().at(-1).link, { redirect: 'manual' })).status, 200);
});

test('theSecretKeyPassesEveryRule', async () => {
    const server = clientOf(service, service.secret);
    const added = unwrapped(await server.from('events')
        .insert({ titre: 'De la mairie', status: 'archived' }).select('status,user_id').single());
    assert.deepEqual(added, { status: 'archived', user_id: null });
    assert.equal((await clientOf(service, 'sb_publishable_another').from('events').select()).status, 401);
});

test('whoSignedOutWritesNothing', async () => {
    const token = (await anne.auth.getSession()).data.session.access_token;
    assert.equal((await anne.auth.signOut()).error, null);
    assert.equal((await anne.from('events').insert({ titre: 'X' })).status, 401);
    assert.equal((await visitor.auth.getUser(token)).error.name, 'AuthSessionMissingError');
});

test('anAddressIsConfirmedBeforeTheFirstSignIn', async () => {
    const confirming = await LocalService.start('--confirm-email', '--mail-pause', '0');
    try {
        const karim = clientOf(confirming);
        const email = 'karim@village.example';
        const signedUp = unwrapped(await karim.auth.signUp({ email, password, options: { data: { n: 1 } } }));
        assert.equal(signedUp.session, null);
        assert.equal(signedUp.user.user_metadata.email_verified, false);
        const early = await karim.auth.signInWithPassword({ email, password });
        assert.equal(early.error.code, 'email_not_confirmed');

        // Signing up again sends the mail again, to the same account.
        const again = unwrapped(await karim.auth.signUp({ email, password: 'un-autre-mot' }));
        assert.equal(again.user.id, signedUp.user.id);
        unwrapped(await karim.auth.resend({ type: 'signup', email }));
        assert.deepEqual(confirming.mails().map((mail) => mail.to), [email, email, email]);

        const [first, , last] = confirming.mails();
        const outdated = await karim.auth.verifyOtp({ token_hash: first.token, type: 'signup' });
        assert.equal(outdated.error.code, 'otp_expired');
        const { session } = unwrapped(await karim.auth.verifyOtp({ token_hash: last.token, type: 'email' }));
        assert.equal(session.user.user_metadata.email_verified, true);
        // The account has the password of its first sign-up.
        unwrapped(await clientOf(confirming).auth.signInWithPassword({ email, password }));

        // Once confirmed, a stranger who tries the address learns nothing and nobody gets a mail.
        const stranger = unwrapped(await clientOf(confirming).auth.signUp({ email, password }));
        assert.notEqual(stranger.user.id, signedUp.user.id);
        assert.deepEqual(stranger.user.identities, []);
        assert.equal(confirming.mails().length, 3);
    } finally {
        assert.equal(await confirming.stop(), 0, confirming.output);
    }
});
