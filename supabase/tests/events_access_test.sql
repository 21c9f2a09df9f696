-- Who may do what to the events, asked as each of the API's roles.
begin;
select plan(38);

insert into auth.users (id, email) values
    ('b0000000-0000-4000-8000-000000000001', 'anne@test.example'),
    ('b0000000-0000-4000-8000-000000000002', 'bruno@test.example');
delete from public.events;
insert into public.events (id, titre, user_id, ts) values
    ('c0000000-0000-4000-8000-000000000001', 'À Anne', 'b0000000-0000-4000-8000-000000000001', '2020-01-01'),
    ('c0000000-0000-4000-8000-000000000002', 'À Bruno', 'b0000000-0000-4000-8000-000000000002', '2020-01-01'),
    ('c0000000-0000-4000-8000-000000000003', 'À personne', null, '2020-01-01');

-- Structure.
select col_is_pk('public', 'events', 'id', 'the key is id');
select columns_are('public', 'events', array['id', 'titre', 'description', 'tags', 'lieu', 'link',
    'organise_par', 'status', 'contact_email', 'user_id', 'ts', 'date_texte', 'heure_texte',
    'starts_at'], 'the columns are those the application asks for');
select ok((select relrowsecurity from pg_class where oid = 'public.events'::regclass),
    'row level security is on');
select table_privs_are('public', 'events', 'anon', array['SELECT'], 'anon only reads');
select table_privs_are('public', 'events', 'authenticated', array['SELECT', 'DELETE'],
    'an account reads and removes, and writes column by column');
select column_privs_are('public', 'events', 'status', 'authenticated', array['SELECT'],
    'status is out of reach');
select column_privs_are('public', 'events', 'ts', 'authenticated', array['SELECT'],
    'ts is out of reach');

-- Nobody signed in.
set local role anon;
set local request.jwt.claims = '{"role": "anon"}';
select is((select count(*) from public.events), 3::bigint, 'anon reads every event');
select throws_ok($$insert into public.events (titre) values ('X')$$, '42501', null,
    'anon adds nothing');
select throws_ok($$update public.events set titre = 'X'$$, '42501', null, 'anon changes nothing');
select throws_ok($$delete from public.events$$, '42501', null, 'anon removes nothing');
select throws_ok($$truncate public.events$$, '42501', null, 'anon empties nothing');
select throws_ok($$select * from auth.users$$, '42501', null, 'anon sees no account');
reset role;

-- Anne signed in.
set local role authenticated;
set local request.jwt.claims = '{"role": "authenticated", "sub": "b0000000-0000-4000-8000-000000000001"}';
select is((select count(*) from public.events), 3::bigint, 'an account reads every event');

select lives_ok($$insert into public.events (id, titre) values
    ('c0000000-0000-4000-8000-00000000000A', 'Nouveau')$$, 'an account adds an event');
select is((select user_id from public.events where titre = 'Nouveau'),
    'b0000000-0000-4000-8000-000000000001'::uuid, 'which is its own by default');
select is((select status from public.events where titre = 'Nouveau'), 'published',
    'and has the status of the service');
select is((select ts from public.events where titre = 'Nouveau'), now(), 'and the time of adding');
select lives_ok($$insert into public.events (titre, user_id) values
    ('À moi', 'b0000000-0000-4000-8000-000000000001')$$, 'it may say that it is its own');
select throws_ok($$insert into public.events (titre, user_id) values
    ('X', 'b0000000-0000-4000-8000-000000000002')$$, '42501',
    'new row violates row-level security policy for table "events"',
    'but not that it is another''s');
select throws_ok($$insert into public.events (titre, user_id) values ('X', null)$$, '42501',
    'new row violates row-level security policy for table "events"', 'nor nobody''s');
select throws_ok($$insert into public.events (titre, status) values ('X', 'hidden')$$, '42501',
    null, 'it cannot set the status of a new event');
select throws_ok($$insert into public.events (titre, ts) values ('X', now())$$, '42501', null,
    'nor its ts');
select throws_ok($$insert into public.events (id, titre) values
    ('c0000000-0000-4000-8000-000000000002', 'X')$$, '23505', null,
    'a key that is taken is refused');

select lives_ok($$update public.events set id = 'C0000000-0000-4000-8000-000000000001',
    user_id = 'b0000000-0000-4000-8000-000000000001', titre = 'Changé'
    where id = 'c0000000-0000-4000-8000-000000000001'$$,
    'a change may repeat the key and the owner');
select is((select titre from public.events where id = 'c0000000-0000-4000-8000-000000000001'),
    'Changé', 'and changes the rest');
select throws_ok($$update public.events set id = gen_random_uuid()
    where id = 'c0000000-0000-4000-8000-000000000001'$$, '42501',
    'the id of an event cannot be changed', 'another key is refused');
select throws_ok($$update public.events set user_id = 'b0000000-0000-4000-8000-000000000002'
    where id = 'c0000000-0000-4000-8000-000000000001'$$, '42501',
    'new row violates row-level security policy for table "events"', 'another owner is refused');
select throws_ok($$update public.events set user_id = null
    where id = 'c0000000-0000-4000-8000-000000000001'$$, '42501',
    'new row violates row-level security policy for table "events"', 'no owner is refused, too');
select throws_ok($$update public.events set status = 'hidden'$$, '42501', null,
    'the status of an event cannot be changed');
select throws_ok($$update public.events set ts = now()$$, '42501', null,
    'the ts of an event cannot be changed');
select is_empty($$update public.events set titre = 'X' where id in
    ('c0000000-0000-4000-8000-000000000002', 'c0000000-0000-4000-8000-000000000003')
    returning id$$, 'the events of others are not changed');
select is_empty($$delete from public.events where id in
    ('c0000000-0000-4000-8000-000000000002', 'c0000000-0000-4000-8000-000000000003')
    returning id$$, 'nor removed');
select isnt_empty($$delete from public.events where titre = 'Nouveau' returning id$$,
    'its own event is removed');
reset role;

select results_eq(
    $$select titre from public.events where user_id is distinct from
      'b0000000-0000-4000-8000-000000000001' order by titre$$,
    array['À Bruno', 'À personne'], 'the events of others are as they were');

-- An account that is removed.
delete from auth.users where id = 'b0000000-0000-4000-8000-000000000001';
select is((select count(*) from public.events where titre in ('Changé', 'À moi') and user_id is null),
    2::bigint, 'the events of an account outlive it, without an owner');

-- Signed in without being anybody.
set local role authenticated;
set local request.jwt.claims = '{"role": "authenticated"}';
select throws_ok($$insert into public.events (titre) values ('X')$$, '42501', null,
    'a token without an account adds nothing');
select is_empty($$update public.events set titre = 'X' where user_id is null returning id$$,
    'and takes over nothing');
reset role;

select * from finish();
rollback;
