-- The village's events, one row each. A client reads the row as JSON, so every column is either a
-- text, a list of texts or an instant; `id` and `user_id` arrive there as texts.
create table public.events (
    id           uuid primary key default gen_random_uuid(),
    titre        text not null,
    description  text,
    tags         text[],
    lieu         text,
    link         text,
    organise_par text,
    status       text not null default 'published',
    contact_email text,
    -- An event outlives the account that announced it: the village still wants to see it.
    user_id      uuid default auth.uid() references auth.users (id) on delete set null,
    ts           timestamptz not null default now(),
    date_texte   text,
    heure_texte  text,
    starts_at    timestamptz,

    -- One row that a client cannot decode hides the whole list from everybody, and one text without
    -- bounds makes it slow for everybody.
    constraint events_titre_length        check (char_length(titre) <= 200 and titre ~ '\S'),
    constraint events_description_length  check (char_length(description) <= 10000),
    constraint events_tags_form           check (cardinality(tags) <= 20
                                                 and array_ndims(tags) <= 1
                                                 and array_position(tags, null) is null
                                                 and char_length(array_to_string(tags, '')) <= 1000),
    constraint events_lieu_length         check (char_length(lieu) <= 200),
    constraint events_link_length         check (char_length(link) <= 2000),
    constraint events_organise_par_length check (char_length(organise_par) <= 200),
    constraint events_status_length       check (char_length(status) <= 50),
    constraint events_contact_email_length check (char_length(contact_email) <= 320),
    constraint events_date_texte_length   check (char_length(date_texte) <= 100),
    constraint events_heure_texte_length  check (char_length(heure_texte) <= 100),
    constraint events_starts_at_range     check (starts_at >= '0001-01-01T00:00:00Z'
                                                 and starts_at < '9999-12-31T00:00:00Z')
);

comment on table public.events is 'Community events of Morvelle and its surroundings';

-- Serves order=starts_at.asc.nullslast, the one query every start of the application sends.
create index events_starts_at_idx on public.events (starts_at asc nulls last);
-- Serves the removal of an account, which looks for its events.
create index events_user_id_idx on public.events (user_id);
