-- What an event may hold, and how fast the list is found.
begin;
select plan(30);

create function pg_temp.refuses(columns text, violated text) returns text language plpgsql as $$
declare
    hit text;
begin
    execute format('insert into public.events (titre, %s', columns);
    return fail('accepted: ' || columns);
exception when check_violation then
    get stacked diagnostics hit = constraint_name;
    return is(hit, violated, violated || ' refuses ' || left(columns, 60));
end
$$;

create function pg_temp.accepts(columns text) returns text language plpgsql as $$
begin
    return lives_ok(format('insert into public.events (titre, %s', columns),
        'accepted: ' || left(columns, 60));
end
$$;

select pg_temp.accepts($$lieu) values (repeat('é', 200), repeat('x', 200))$$);
select pg_temp.refuses($$lieu) values (repeat('é', 201), null)$$, 'events_titre_length');
select pg_temp.refuses($$lieu) values ('', null)$$, 'events_titre_length');
select pg_temp.refuses($$lieu) values (E' \n\t', null)$$, 'events_titre_length');
select throws_ok($$insert into public.events (titre) values (null)$$, '23502', null,
    'an event needs a title');

select pg_temp.accepts($$description) values ('X', repeat('x', 10000))$$);
select pg_temp.refuses($$description) values ('X', repeat('x', 10001))$$, 'events_description_length');
select pg_temp.refuses($$lieu) values ('X', repeat('x', 201))$$, 'events_lieu_length');
select pg_temp.accepts($$link) values ('X', repeat('x', 2000))$$);
select pg_temp.refuses($$link) values ('X', repeat('x', 2001))$$, 'events_link_length');
select pg_temp.refuses($$organise_par) values ('X', repeat('x', 201))$$, 'events_organise_par_length');
select pg_temp.refuses($$contact_email) values ('X', repeat('x', 321))$$, 'events_contact_email_length');
select pg_temp.refuses($$date_texte) values ('X', repeat('x', 101))$$, 'events_date_texte_length');
select pg_temp.refuses($$heure_texte) values ('X', repeat('x', 101))$$, 'events_heure_texte_length');
select pg_temp.refuses($$status) values ('X', repeat('x', 51))$$, 'events_status_length');

select pg_temp.accepts($$tags) values ('X', null)$$);
select pg_temp.accepts($$tags) values ('X', '{}')$$);
select pg_temp.accepts($$tags) values ('X', array_fill('tag'::text, array[20]))$$);
select pg_temp.refuses($$tags) values ('X', array_fill('tag'::text, array[21]))$$, 'events_tags_form');
select pg_temp.refuses($$tags) values ('X', array['a', null])$$, 'events_tags_form');
select pg_temp.refuses($$tags) values ('X', array[array['a'], array['b']])$$, 'events_tags_form');
select pg_temp.refuses($$tags) values ('X', array[repeat('x', 1001)])$$, 'events_tags_form');

select pg_temp.accepts($$starts_at) values ('X', '0001-01-01T00:00:00Z')$$);
select pg_temp.accepts($$starts_at) values ('X', '9999-12-30T23:59:59Z')$$);
select pg_temp.refuses($$starts_at) values ('X', 'infinity')$$, 'events_starts_at_range');
select pg_temp.refuses($$starts_at) values ('X', '-infinity')$$, 'events_starts_at_range');
select pg_temp.refuses($$starts_at) values ('X', '0001-01-01T00:00:00Z BC')$$, 'events_starts_at_range');
select pg_temp.refuses($$starts_at) values ('X', '10000-01-01T00:00:00Z')$$, 'events_starts_at_range');

-- The list's own query, on many events: read in the order of the index, without sorting.
insert into public.events (titre, starts_at)
select 'X', '2020-01-01'::timestamptz + make_interval(mins => (n * 7919) % 20011)
from generate_series(1, 20000) as n;
analyze public.events;

create function pg_temp.plan_as_anon() returns setof text language plpgsql as $$
begin
    set local role anon;
    return query execute 'explain select * from public.events
        order by starts_at asc nulls last limit 1000';
    reset role;
end
$$;
create temporary table plan on commit drop as select pg_temp.plan_as_anon() as line;
select ok(exists (select from plan where line like '%Index Scan using events_starts_at_idx%'),
    'the list is read by its index');
select ok(not exists (select from plan where line like '%Sort%'), 'and needs no sorting');

select * from finish();
rollback;
