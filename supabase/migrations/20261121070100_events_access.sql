-- Who may do what. Projects made before 2026 grant everything on a new table to every API role, so
-- the table starts from nothing here.
revoke all on table public.events from anon, authenticated;

grant select on table public.events to anon, authenticated;
grant delete on table public.events to authenticated;

-- Without `status` and `ts`, which only the service sets. A client sends `id` and `user_id` with
-- every change, so both columns are granted, and what follows keeps them as they are.
grant insert (id, titre, description, tags, lieu, link, organise_par, contact_email, user_id,
              date_texte, heure_texte, starts_at)
    on table public.events to authenticated;
grant update (id, titre, description, tags, lieu, link, organise_par, contact_email, user_id,
              date_texte, heure_texte, starts_at)
    on table public.events to authenticated;

grant all on table public.events to service_role;

alter table public.events enable row level security;

create policy "Everyone reads every event" on public.events
    for select to anon, authenticated
    using (true);

-- `(select auth.uid())` is evaluated once a statement, a bare call once a row.
create policy "An account adds events of its own" on public.events
    for insert to authenticated
    with check (user_id = (select auth.uid()));

create policy "An account changes its own events and keeps them" on public.events
    for update to authenticated
    using (user_id = (select auth.uid()))
    with check (user_id = (select auth.uid()));

create policy "An account removes its own events" on public.events
    for delete to authenticated
    using (user_id = (select auth.uid()));

-- A policy sees only the new row and cannot tell that its key has changed.
create function public.events_keep_id() returns trigger
    language plpgsql
    set search_path = ''
as $$
begin
    raise exception 'the id of an event cannot be changed' using errcode = '42501';
end
$$;

revoke all on function public.events_keep_id() from public, anon, authenticated;

create trigger events_keep_id
    before update of id on public.events
    for each row
    when (new.id is distinct from old.id)
    execute function public.events_keep_id();
