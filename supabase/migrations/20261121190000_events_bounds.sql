-- What one account may do to the village's list. The key is public and anybody may sign up, so
-- without bounds one account could bury the list under events, or put a thousand of them in front of
-- everybody. The service role and the database's owner are not bound.

-- Not `public`: what is there can be called through the interface.
create schema private;

-- All figures. To change one, replace this function.
create function private.events_bounds(
    out held int, -- events that an account may have at a time
    out added int, -- events that it may add in an hour, counted from the first of them
    out earliest date, -- the first day on which an event may be
    out latest date -- and the last one
) language sql immutable set search_path = '' as $$
    select 400, 60, date '2000-01-01', date '2099-12-31'
$$;

-- How many events an account has added since when. Kept apart from the events, since what was
-- removed in between counts, too.
create table private.events_added (
    account uuid primary key references auth.users (id) on delete cascade,
    since timestamptz not null,
    added int not null
);

-- Runs as its owner: an account has no way to the count of its own.
create function private.events_bound() returns trigger
    language plpgsql
    security definer
    set search_path = ''
as $$
declare
    bounds record;
    count_so_far int;
begin
    select * into bounds from private.events_bounds();
    -- The time zones of the world lie within a day of each other.
    if new.starts_at < bounds.earliest - interval '1 day' or new.starts_at >= bounds.latest + interval '2 days'
       -- A day as text sorts like a day; other words are nobody's business.
       or (new.date_texte ~ '^[0-9]{4}-[0-9]{2}-[0-9]{2}$'
           and new.date_texte collate "C" not between bounds.earliest::text and bounds.latest::text) then
        raise exception 'La date d’un événement doit être comprise entre % et %.',
            extract(year from bounds.earliest), extract(year from bounds.latest)
            using errcode = 'check_violation';
    end if;
    if tg_op = 'UPDATE' then
        return new;
    end if;

    -- Whoever adds at the same time under the same account waits here, and counts what was added.
    insert into private.events_added as so_far (account, since, added)
    values (new.user_id, now(), 1)
    on conflict (account) do update
        set added = case when so_far.since <= now() - interval '1 hour' then 1 else so_far.added + 1 end,
            since = case when so_far.since <= now() - interval '1 hour' then now() else so_far.since end
    returning so_far.added into count_so_far;
    if count_so_far > bounds.added then
        raise exception 'Un compte peut ajouter % événements par heure. Réessayez plus tard.', bounds.added
            using errcode = 'PT429';
    end if;
    select count(*) into count_so_far from public.events where user_id = new.user_id;
    if count_so_far >= bounds.held then
        raise exception 'Un compte peut avoir % événements. Supprimez-en d’anciens pour en ajouter.', bounds.held
            using errcode = 'check_violation';
    end if;
    return new;
end
$$;

revoke all on function private.events_bounds() from public;
revoke all on function private.events_bound() from public;

-- Before each row, so that a request with a hundred thousand of them ends at the first one too many.
-- Rows of nobody are for the policies to refuse.
create trigger events_bound_added
    before insert on public.events
    for each row
    when (current_user = 'authenticated' and new.user_id is not null)
    execute function private.events_bound();

create trigger events_bound_changed
    before update of starts_at, date_texte on public.events
    for each row
    when (current_user = 'authenticated'
          and (new.starts_at is distinct from old.starts_at
               or new.date_texte is distinct from old.date_texte))
    execute function private.events_bound();
