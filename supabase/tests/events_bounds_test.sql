-- How much one account may put into the list, and when events may be.
begin;
select plan(33);

insert into auth.users (id, email) values
    ('b0000000-0000-4000-8000-000000000001', 'anne@test.example'),
    ('b0000000-0000-4000-8000-000000000002', 'bruno@test.example');
delete from public.events;

-- The figures that the operator's guide names.
select results_eq('select * from private.events_bounds()',
    $$values (400, 60, date '2000-01-01', date '2099-12-31')$$, 'the figures are those of the guide');
select schema_privs_are('private', role, array[]::text[], role || ' does not reach the figures')
from unnest(array['anon', 'authenticated']) as role;

-- What the project's security advisor would warn of.
select is_empty($$select oid::regprocedure from pg_proc
    where pronamespace in ('private'::regnamespace, 'public'::regnamespace)
      and not exists (select from unnest(proconfig) as setting where setting like 'search\_path=%')
      and not exists (select from pg_depend where objid = pg_proc.oid and deptype = 'e')$$,
    'no function of ours looks for names where its caller says');

-- Smaller ones, to reach them sooner.
create or replace function private.events_bounds(
    out held int, out added int, out earliest date, out latest date
) language sql immutable set search_path = '' as $$
    select 6, 4, date '2000-01-01', date '2099-12-31'
$$;

create function pg_temp.sign_in(number int) returns void language plpgsql as $$
begin
    perform set_config('request.jwt.claims', json_build_object('role', 'authenticated',
        'sub', 'b0000000-0000-4000-8000-00000000000' || number)::text, true);
    set local role authenticated;
end
$$;
create function pg_temp.an_hour_passes() returns void language sql security definer as $$
    update private.events_added set since = since - interval '1 hour'
$$;

select pg_temp.sign_in(1);
select lives_ok($$insert into public.events (titre) select 'Un' from generate_series(1, 4)$$,
    'as many as may be added in an hour');
select throws_ok($$insert into public.events (titre) values ('X')$$, 'PT429',
    'Un compte peut ajouter 4 événements par heure. Réessayez plus tard.', 'and not one more');
select lives_ok($$delete from public.events where titre = 'Un'$$, 'what is removed');
select throws_ok($$insert into public.events (titre) values ('X')$$, 'PT429', null,
    'has been added all the same');
select lives_ok($$update public.events set titre = 'Y'$$, 'changing goes on');

select pg_temp.sign_in(2);
select lives_ok($$insert into public.events (titre) values ('Deux')$$,
    'the events of one account are not counted for another');
reset role;
select is((select added from private.events_added
           where account = 'b0000000-0000-4000-8000-000000000001'), 4, 'what was refused is not counted');

select pg_temp.an_hour_passes();
select pg_temp.sign_in(1);
select lives_ok($$insert into public.events (titre) select 'Trois' from generate_series(1, 4)$$,
    'after an hour it begins anew');
select throws_ok($$insert into public.events (titre) values ('X')$$, 'PT429', null, 'with the same bound');
reset role;
select pg_temp.an_hour_passes();
select pg_temp.sign_in(1);
select throws_ok($$insert into public.events (titre) select 'X' from generate_series(1, 3)$$, '23514',
    'Un compte peut avoir 6 événements. Supprimez-en d’anciens pour en ajouter.',
    'an account does not have more than it may have');
select is((select count(*) from public.events where titre = 'X'), 0::bigint,
    'of a request that is too large nothing is added');
select lives_ok($$insert into public.events (titre) select 'Trois' from generate_series(1, 2)$$,
    'up to that it may');
select lives_ok($$delete from public.events where id in
    (select id from public.events where titre = 'Trois' limit 1)$$, 'and after removing one');
select lives_ok($$insert into public.events (titre) values ('Trois')$$, 'another one');
reset role;

select pg_temp.sign_in(1);
select throws_ok($$insert into public.events (titre) select 'X' from generate_series(1, 100000)$$,
    null, null, 'a hundred thousand in one request are refused');
reset role;
select is((select added from private.events_added
           where account = 'b0000000-0000-4000-8000-000000000001'), 3, 'at the first one too many');

-- The owner of the database, who loads seeds and archives, is not bound.
select lives_ok($$insert into public.events (titre, user_id, starts_at)
    select 'Archive', 'b0000000-0000-4000-8000-000000000001', '1931-05-01'
    from generate_series(1, 10)$$, 'the owner of the database adds what there is to add');
set local role service_role;
select lives_ok($$insert into public.events (titre, user_id, starts_at)
    values ('Archive', 'b0000000-0000-4000-8000-000000000001', '1931-05-01')$$, 'so does the service role');
reset role;

-- When events may be.
delete from public.events;
delete from private.events_added;
create function pg_temp.refuses(start text, day text) returns text language plpgsql as $$
begin
    return throws_ok(format('insert into public.events (titre, starts_at, date_texte) values (%L, %L, %L)',
        'X', start, day), '23514', 'La date d’un événement doit être comprise entre 2000 et 2099.',
        'refused: ' || coalesce(start, day));
end
$$;
create function pg_temp.accepts(start text, day text) returns text language plpgsql as $$
begin
    return lives_ok(format('insert into public.events (titre, starts_at, date_texte) values (%L, %L, %L)',
        'Y', start, day), 'accepted: ' || coalesce(start, day));
end
$$;
select pg_temp.sign_in(2);
select pg_temp.refuses('0001-01-01T00:00:00Z', null);
select pg_temp.refuses('1999-12-30T12:00:00Z', null);
select pg_temp.refuses('2100-01-02T12:00:00Z', null);
select pg_temp.refuses(null, '0001-01-01');
select pg_temp.refuses(null, '2100-01-01');
select pg_temp.accepts('2000-01-01T00:00:00+02', '2000-01-01');
select pg_temp.accepts('2099-12-31T23:59:59-02', '2099-12-31');
select pg_temp.accepts(null, 'un samedi de 1931, ou le 14-07-1789');
select throws_ok($$update public.events set starts_at = '0001-01-01T00:00:00Z'$$, '23514', null,
    'an event is not moved to another millennium');
reset role;

-- An old event of an archive that was given to a member.
insert into public.events (id, titre, user_id, starts_at) values ('c0000000-0000-4000-8000-000000000001',
    'Archive', 'b0000000-0000-4000-8000-000000000002', '1931-05-01');
select pg_temp.sign_in(2);
select lives_ok($$update public.events set titre = 'Fête de 1931', starts_at = '1931-05-01'
    where id = 'c0000000-0000-4000-8000-000000000001'$$, 'an old event is changed where it stands');
reset role;

-- Nothing is left of an account that is removed.
delete from auth.users where id = 'b0000000-0000-4000-8000-000000000001';
select is_empty($$select from private.events_added
    where account = 'b0000000-0000-4000-8000-000000000001'$$, 'the count goes with the account');

select * from finish();
rollback;
