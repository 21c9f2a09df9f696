-- What a hosted project brings along before its first migration: the API roles, the schema of the
-- accounts and the functions that policies ask who is calling. Run at every start, so each
-- statement holds when what it makes is there already.

do $$
declare
    wanted text;
begin
    foreach wanted in array array['anon', 'authenticated', 'service_role', 'authenticator'] loop
        if not exists (select from pg_roles where rolname = wanted) then
            execute format('create role %I nologin noinherit', wanted);
        end if;
    end loop;
end
$$;
alter role service_role bypassrls;
alter role authenticator login noinherit;
grant anon, authenticated, service_role to authenticator;
alter role authenticator set statement_timeout = '8s';

create schema if not exists extensions;
grant usage on schema extensions to anon, authenticated, service_role;
create extension if not exists pgcrypto with schema extensions;
create extension if not exists "uuid-ossp" with schema extensions;
alter database postgres set search_path = "$user", public, extensions;

revoke create on schema public from public;
grant usage on schema public to anon, authenticated, service_role;
-- Nothing is granted on what a migration makes, as in a project of today: what it does not grant
-- itself fails here, too. A cluster of an earlier version still has the grants of older projects.
alter default privileges in schema public revoke all on tables from anon, authenticated, service_role;
alter default privileges in schema public revoke all on sequences from anon, authenticated, service_role;
alter default privileges in schema public revoke all on functions from anon, authenticated, service_role;

create schema if not exists auth;
grant usage on schema auth to anon, authenticated, service_role;

-- The columns that a seed may fill on a hosted project, and those that signing in reads.
create table if not exists auth.users (
    instance_id uuid,
    id uuid primary key,
    aud text,
    role text,
    email text,
    encrypted_password text,
    email_confirmed_at timestamptz,
    invited_at timestamptz,
    confirmation_token text,
    confirmation_sent_at timestamptz,
    recovery_token text,
    recovery_sent_at timestamptz,
    email_change_token_new text,
    email_change text,
    email_change_sent_at timestamptz,
    last_sign_in_at timestamptz,
    raw_app_meta_data jsonb,
    raw_user_meta_data jsonb,
    is_super_admin boolean,
    created_at timestamptz,
    updated_at timestamptz,
    phone text unique,
    phone_confirmed_at timestamptz,
    is_sso_user boolean not null default false,
    is_anonymous boolean not null default false,
    deleted_at timestamptz
);
create unique index if not exists users_email_key on auth.users (lower(email));

create table if not exists auth.refresh_tokens (
    id bigint generated always as identity primary key,
    -- The token itself is only ever in the hands of its owner.
    token_hash bytea not null unique,
    session_id uuid not null,
    user_id uuid not null references auth.users (id) on delete cascade,
    revoked boolean not null default false,
    created_at timestamptz not null default now()
);
create index if not exists refresh_tokens_session_id_idx on auth.refresh_tokens (session_id);
create index if not exists refresh_tokens_user_id_idx on auth.refresh_tokens (user_id);

create or replace function auth.jwt() returns jsonb
    language sql stable
as $$
    select nullif(current_setting('request.jwt.claims', true), '')::jsonb
$$;

create or replace function auth.uid() returns uuid
    language sql stable
as $$
    select nullif(auth.jwt() ->> 'sub', '')::uuid
$$;

create or replace function auth.role() returns text
    language sql stable
as $$
    select auth.jwt() ->> 'role'
$$;

create schema if not exists supabase_migrations;
create table if not exists supabase_migrations.schema_migrations (
    version text primary key,
    statements text[],
    name text
);
create table if not exists supabase_migrations.seed_files (
    path text primary key,
    hash text not null
);

-- Used by the service alone. The accounts' interface writes instants with a Z, and leaves out what
-- is not known.
create schema if not exists local_service;

create or replace function local_service.instant(moment timestamptz) returns text
    language sql immutable
as $$
    select to_char(moment at time zone 'UTC', 'YYYY-MM-DD"T"HH24:MI:SS.US"Z"')
$$;

create or replace function local_service.account(account auth.users) returns json
    language sql stable
as $$
    select (rtrim(json_strip_nulls(json_build_object(
        'id', account.id,
        'aud', coalesce(account.aud, 'authenticated'),
        'role', coalesce(account.role, 'authenticated'),
        'email', account.email,
        'email_confirmed_at', local_service.instant(account.email_confirmed_at),
        'phone', coalesce(account.phone, ''),
        'confirmation_sent_at', local_service.instant(account.confirmation_sent_at),
        'recovery_sent_at', local_service.instant(account.recovery_sent_at),
        'new_email', nullif(account.email_change, ''),
        'email_change_sent_at', local_service.instant(account.email_change_sent_at),
        'confirmed_at', local_service.instant(account.email_confirmed_at),
        'last_sign_in_at', local_service.instant(account.last_sign_in_at),
        'app_metadata', coalesce(account.raw_app_meta_data, '{}'),
        'identities', json_build_array(json_build_object(
            'identity_id', account.id,
            'id', account.id,
            'user_id', account.id,
            'identity_data', json_build_object(
                'email', account.email,
                'email_verified', account.email_confirmed_at is not null,
                'phone_verified', false,
                'sub', account.id),
            'provider', 'email',
            'last_sign_in_at', local_service.instant(account.last_sign_in_at),
            'created_at', local_service.instant(account.created_at),
            'updated_at', local_service.instant(account.updated_at),
            'email', account.email)),
        'created_at', local_service.instant(account.created_at),
        'updated_at', local_service.instant(account.updated_at),
        'is_anonymous', account.is_anonymous))::text, '}')
        -- With the nulls that somebody wrote there.
        || ',"user_metadata":' || coalesce(account.raw_user_meta_data, '{}')::text || '}')::json
$$;

-- An address is confirmed once, by whichever mail its owner answers first.
create or replace function local_service.confirm(account uuid) returns void
    language sql volatile
as $$
    update auth.users
    set email_confirmed_at = now(), confirmation_token = '', updated_at = now(),
        raw_user_meta_data = coalesce(raw_user_meta_data, '{}') || '{"email_verified": true}'
    where id = account and email_confirmed_at is null
$$;

create or replace function local_service.change_email(account uuid) returns void
    language sql volatile
as $$
    update auth.users
    set email = email_change, email_change = '', updated_at = now(),
        email_confirmed_at = coalesce(email_confirmed_at, now()),
        raw_user_meta_data = coalesce(raw_user_meta_data, '{}')
            || jsonb_build_object('email', email_change, 'email_verified', true)
    where id = account and email_change <> ''
$$;

create or replace function local_service.password_hash(password text) returns text
    language sql volatile
as $$
    select extensions.crypt(password, extensions.gen_salt('bf', 8))
$$;

create or replace function local_service.password_fits(password text, hash text) returns boolean
    language sql immutable
as $$
    select case when hash like '$2_$%' then extensions.crypt(password, hash) = hash else false end
$$;

create or replace function local_service.token_hash(token text) returns bytea
    language sql immutable
as $$
    select sha256(convert_to(token, 'UTF8'))
$$;
