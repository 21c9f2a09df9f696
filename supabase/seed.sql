-- A village's worth of events around today, for try-outs and tests: the days are counted from the
-- day of loading. Loaded once more, it lays the events that nobody has changed around that day, so
-- the list never ages; what was changed, removed or added stays as it is. The accounts have no
-- password; a person who wants to sign in as one of them sets it first.

create temporary table first_time as
select not exists (select from auth.users where id::text like 'a0000000-0000-4000-8000-00000000000_')
   and not exists (select from public.events where id::text like '5eed0000-0000-4000-8000-%') as yes;

insert into auth.users (instance_id, id, aud, role, email, encrypted_password, email_confirmed_at,
                        confirmation_token, recovery_token, email_change_token_new, email_change,
                        raw_app_meta_data, raw_user_meta_data, created_at, updated_at)
select '00000000-0000-0000-0000-000000000000', account.id, 'authenticated', 'authenticated',
       account.email, '', now(), '', '', '', '',
       '{"provider": "email", "providers": ["email"]}', '{}', now(), now()
from (values
    ('a0000000-0000-4000-8000-000000000001'::uuid, 'camille@morvelle.example'),
    ('a0000000-0000-4000-8000-000000000002'::uuid, 'yann@morvelle.example'),
    ('a0000000-0000-4000-8000-000000000003'::uuid, 'lucie@morvelle.example'),
    ('a0000000-0000-4000-8000-000000000004'::uuid, 'animation@morvelle.example')
) as account (id, email)
where (select yes from first_time);

-- `jour` counts days from the day of loading, in the village's own time. An event with both `jour`
-- and `heure` starts at an instant; with `jour` alone it has a day as text; with neither it has
-- `mots`, the words of whoever announced it, or nothing at all.
create temporary table annonces as
select row_number() over () as n, annonce.*
from (values
    -- Past months.
    (-97, time '18:30', null, 1, 'Assemblée générale de l’Association Culturelle',
     'Bilan de l’année, projets à venir et renouvellement du bureau. Un verre de l’amitié suivra.',
     array['Vie du village'], 'Salle Vaudrelle', null, 'Association Culturelle', 'camille@morvelle.example'),
    (-92, time '15:00', null, 2, 'Concours de boules en doublettes',
     'Inscriptions sur place à partir de 14 h 15, 5 € par équipe. Buvette à l’ombre des tilleuls.',
     array['Sport', 'Vie du village'], 'Place du Lavoir', null, 'Morvelle Animation', null),
    (-88, time '20:45', null, 3, 'Ciné plein air : « Le Vent dans les roseaux »',
     'Apportez vos couvertures et vos chaises. Repli à la Salle Vaudrelle en cas de pluie.',
     array['Projection'], 'Pré de la Grange', null, 'La Grange', 'contact@lagrange.example'),
    (-81, time '10:00', null, 0, 'Balade botanique au bord de la Brune',
     'Deux heures de marche tranquille avec Odile, qui connaît chaque orchidée par son petit nom.',
     array['Vie du village', 'Jeune public'], 'Pont de Brunelande', null, 'Amis de Brunelande', null),
    (-74, time '12:30', null, 4, 'Grand repas champêtre',
     'Jambon à la broche, gratin, fromage, tarte aux prunes. 16 € adulte, 8 € moins de 12 ans. Réservation auprès de la boulangerie jusqu’au mercredi précédent.',
     array['Repas', 'Vie du village'], 'Pré de la Grange', null, 'Morvelle Animation', 'animation@morvelle.example'),
    (-66, time '17:00', null, 1, 'Heure du conte', 'Des histoires de loups, de soupes et de cailloux.',
     array['Bibliotheque', 'Jeune public'], 'Bibliothèque de Morvelle', null, 'Les Lentibulles', null),
    (-60, time '20:30', null, 3, 'Concert : trio Aubépine', 'Violon, accordéon et contrebasse. Participation libre.',
     array['Spectacle'], 'Église Saint-Aubin', 'https://trio-aubepine.example', 'Association Culturelle', null),
    (-52, null, null, 2, 'Vide-greniers des deux rives',
     'Une centaine d’exposants dans les rues du bourg. Installation dès 6 h, circulation fermée jusqu’à 18 h.',
     array['Vie du village'], 'Bourg de Morvelle', null, 'Morvelle Animation', null),
    (-45, time '19:00', null, 1, 'Distribution des paniers et dégustation',
     'Soupe du jour offerte à qui apporte son bol.',
     array['Repas'], 'Cour de la Grange', null, 'AMAP Vertelune', 'paniers@vertelune.example'),
    (-41, time '14:00', null, 4, 'Goûter des aînés', 'Jeux de cartes, chansons et brioche.',
     array['Repas', 'Vie du village'], 'Salle Vaudrelle', null, 'Ainés rurauxs', null),
    (-36, time '09:30', null, 0, 'Matinée de nettoyage de la rivière',
     'Bottes et gants conseillés ; sacs fournis par la mairie.',
     array['Vie du village'], 'Pont de Brunelande', null, 'Amis de Brunelande', null),
    (-31, time '20:00', null, 3, 'Conférence : les moulins de la vallée',
     'Sept moulins tournaient encore en 1890. Que reste-t-il de leurs biefs, de leurs meules, de leurs meuniers ? Cartes anciennes et photographies à l’appui.',
     array['Conférence'], 'Salle Vaudrelle', null, 'Causarium', 'causarium@morvelle.example'),
    (-27, time '16:30', null, 2, 'Fête du potager', 'Concours de soupes au chaudron, épouvantails, jeux de piste entre les rangs.',
     array['Jeune public', 'Repas', 'Vie du village'], 'Place du Lavoir', null, 'Les Parents d’élèves', null),
    (-22, time '18:00', null, 1, 'Atelier levain', 'On repart avec son bocal. Huit places.',
     array['Atelier', 'Repas'], 'Fournil de la Boulangerie', null, 'La Boulangerie', 'fournil@morvelle.example'),
    (-18, time '10:00', null, 4, 'Randonnée des trois clochers', '14 km, pique-nique tiré du sac.',
     array['Sport'], 'Départ place du Lavoir', null, 'Morvelle Animation', null),
    (-13, time '20:30', null, 3, 'Théâtre : « La Malle du facteur »',
     'Comédie en deux actes par la troupe des Lentibulles. Durée : 1 h 20. Tarif : 6 €, gratuit pour les moins de 12 ans.',
     array['Spectacle'], 'La Grange', null, 'Les Lentibulles', null),
    (-9, null, null, 0, 'Collecte de jouets', 'Déposez vos jouets en bon état à la bibliothèque, aux heures d’ouverture.',
     array['Vie du village', 'Jeune public'], 'Bibliothèque de Morvelle', null, 'Les Parents d’élèves', null),
    (-6, time '14:30', null, 2, 'Tournoi de tennis de table', null,
     array['Sport', 'Jeune public'], 'Préau de l’école', null, 'Morvelle Animation', null),
    (-4, time '18:30', null, 1, 'Café des parents', 'Les écrans à la maison : on en parle sans se fâcher.',
     array['Conférence'], 'École de Morvelle', null, 'Les Parents d’élèves', 'parents@morvelle.example'),
    (-2, time '17:00', null, 3, 'Répétition ouverte de la chorale', 'Toutes les voix sont les bienvenues, même celles qui n’osent pas.',
     array['Spectacle', 'Vie du village'], 'Église Saint-Aubin', null, 'Association Culturelle', null),
    (-1, time '11:00', null, 4, 'Marché des producteurs', 'Miel, fromages de chèvre, légumes, noix.',
     array['Repas', 'Vie du village'], 'Place du Lavoir', null, 'AMAP Vertelune', null),
    -- Today.
    (0, time '09:00', null, 2, 'Ouverture de la ludothèque', 'Jeux de société à emporter ou à essayer sur place.',
     array['Jeune public'], 'Bibliothèque de Morvelle', null, 'Les Lentibulles', null),
    (0, time '14:00', null, 1, 'Atelier création', 'Pour les enfants de 4 à 11 ans.',
     array['Atelier', 'Jeune public'], 'Salle Vaudrelle', null, 'Association Culturelle', 'camille@morvelle.example'),
    (0, null, null, 2, 'Journée portes ouvertes au fournil', 'On pousse la porte quand on veut, le four est chaud.',
     array['Vie du village'], 'Fournil de la Boulangerie', null, 'La Boulangerie', null),
    (0, time '23:15', null, 3, 'Veillée aux étoiles', 'Lampe frontale rouge, boisson chaude et patience.',
     array['Conférence', 'Jeune public'], 'Butte de Vertelune', null, 'Causarium', null),
    -- The days and weeks ahead.
    (1, time '10:30', null, 1, 'Bébés lecteurs', 'Comptines et livres à toucher, pour les 0–3 ans et leurs grands.',
     array['Bibliotheque', 'Jeune public'], 'Bibliothèque de Morvelle', null, 'Les Lentibulles', null),
    (1, time '19:00', null, 2, 'Réunion publique : la rue du Four',
     'Présentation du projet d’aménagement : trottoirs, plantations, stationnement, sécurité aux abords de l’école. La réunion commence par une présentation des plans, suivie d’un temps de questions ; les observations seront recueillies par écrit et transmises au conseil municipal, qui rendra sa décision en séance publique. Les plans restent visibles en mairie pendant un mois, aux heures d’ouverture. Les personnes qui ne peuvent pas se déplacer peuvent demander le dossier par courrier.',
     array['Vie du village'], 'Salle Vaudrelle', 'https://mairie.morvelle.example/rue-du-four', 'Mairie de Morvelle', null),
    (2, time '20:30', null, 3, 'Bal folk', 'Initiation à 20 h 30, bal à 21 h 30. Musiciens : Les Sabots légers.',
     array['Spectacle', 'Vie du village'], 'La Grange', 'https://sabots-legers.example/agenda', 'La Grange', 'contact@lagrange.example'),
    (3, time '09:00', null, 4, 'Course nature de Brunelande', '8 km et 16 km, départs groupés. Certificat médical demandé. Ravitaillement au pont.',
     array['Sport'], 'Pont de Brunelande', 'https://course.brunelande.example', 'Amis de Brunelande', 'course@brunelande.example'),
    (3, time '12:00', null, 4, 'Soupe partagée', 'Chacun apporte un légume, on épluche ensemble, on mange ensemble.',
     array['Repas'], 'Cour de la Grange', null, 'AMAP Vertelune', null),
    (4, null, null, 1, 'Ramassage des encombrants', 'À sortir la veille au soir, sur le trottoir.',
     array['Vie du village'], 'Bourg de Morvelle', null, 'Mairie de Morvelle', null),
    (5, time '18:00', null, 2, 'Yoga doux', null, array['Sport'], 'Salle Vaudrelle', null, 'Association Culturelle', null),
    (6, time '20:00', null, 3, 'Ciné-débat : l’eau en partage', 'Projection suivie d’une discussion avec une hydrologue.',
     array['Projection', 'Conférence'], 'La Grange', null, 'Causarium', 'causarium@morvelle.example'),
    (7, time '15:30', null, 0, 'Marionnettes : « Pépin et la lune »', 'Dès 3 ans. Durée : 35 minutes.',
     array['Spectacle', 'Jeune public'], 'Bibliothèque de Morvelle', null, 'Les Lentibulles', null),
    (8, time '12:00', null, 4, 'Repas des aînés',
     'Offert aux habitants de plus de 70 ans. Inscription en mairie. Un transport est possible sur demande.',
     array['Repas', 'Vie du village'], 'Salle Vaudrelle', null, 'Ainés rurauxs', 'aines@morvelle.example'),
    (10, time '19:30', null, 1, 'Soirée jeux', 'Du petit bac au grand stratège.', array['Vie du village', 'Jeune public'],
     'Café de la Place', null, 'Les Lentibulles', null),
    (11, time '14:00', null, 2, 'Taille des fruitiers', 'Démonstration dans le verger communal. Sécateur bienvenu.',
     array['Atelier'], 'Verger communal', null, 'Amis de Brunelande', null),
    (13, time '10:00', null, 3, 'Bourse aux livres', 'Un livre déposé, un livre emporté.',
     array['Bibliotheque', 'Vie du village'], 'Bibliothèque de Morvelle', null, 'Association Culturelle', null),
    (15, time '20:30', null, 1, 'Impro : match des deux rives', 'Brunelande contre Vertelune, arbitre impitoyable.',
     array['Spectacle'], 'La Grange', null, 'La Grange', 'contact@lagrange.example'),
    (17, null, null, 4, 'Date limite d’inscription au marché des artisans', null, null, null,
     'https://marche.morvelle.example', 'Morvelle Animation', 'animation@morvelle.example'),
    (19, time '17:30', null, 2, 'Aide aux devoirs', 'Bénévoles recherchés, une heure par semaine suffit.',
     array['Jeune public', 'Vie du village'], 'École de Morvelle', null, 'Les Parents d’élèves', null),
    (22, time '10:00', null, 4, 'Marché des artisans',
     'Trente artisans, manège en bois, chorale à 16 h. Le garde champêtre a promis de passer.',
     array['Jeune public', 'Repas', 'Spectacle', 'Vie du village'], 'Place du Lavoir', 'https://marche.morvelle.example', 'Morvelle Animation', 'animation@morvelle.example'),
    (24, time '18:00', null, 1, 'Atelier vannerie', 'Osier, patience et bons doigts. Dix places, matériel fourni.',
     array['Atelier'], 'Salle Vaudrelle', null, 'Association Culturelle', null),
    (26, time '20:00', null, 3, 'Concert de la chorale', 'De Purcell à Barbara.', array['Spectacle'], 'Église Saint-Aubin',
     null, 'Association Culturelle', null),
    (29, time '16:00', null, 0, 'Goûter-lecture', null, array['Bibliotheque'], 'Café de la Place', null, null, null),
    (33, time '11:30', null, 2, 'Accueil des nouveaux habitants', 'La municipalité et les associations invitent les habitants.',
     array['Repas', 'Vie du village'], 'Salle Vaudrelle', null, 'Mairie de Morvelle', null),
    (38, time '09:30', null, 4, 'Plantation de la haie',
     'Trois cents mètres de charmes, de cornouillers et de noisetiers. Bêche, gants et bonne humeur.',
     array['Vie du village'], 'Chemin de Vertelune', null, 'Amis de Brunelande', null),
    (44, time '20:30', null, 3, 'Conférence : lire le ciel à l’œil nu', null, array['Conférence'], 'La Grange', null, 'Causarium', null),
    (51, time '14:30', null, 1, 'Loto des écoles', 'Gros lot : un panier de l’AMAP chaque semaine pendant trois mois.',
     array['Vie du village', 'Jeune public'], 'Salle Vaudrelle', null, 'Les Parents d’élèves', 'parents@morvelle.example'),
    (58, time '19:00', null, 2, 'Crêpes et cidre', null, array['Repas'], 'Cour de la Grange', null, 'La Boulangerie', null),
    (67, time '15:00', null, 4, 'Défilé costumé', 'De l’école à la place, fanfare en tête, puis goûter pour tous les déguisés.',
     array['Jeune public', 'Spectacle', 'Vie du village'], 'École de Morvelle', null, 'Les Parents d’élèves', null),
    (79, time '09:00', null, 0, 'Tournoi de football à sept', null, array['Sport'], 'Stade de Brunelande', null, 'Football club de Brunelande', null),
    (95, time '10:00', null, 1, 'Foire aux plants', 'Échanges de graines, plants bio, conseils de jardiniers.',
     array['Vie du village', 'Atelier'], 'Place du Lavoir', 'https://vertelune.example/foire', 'AMAP Vertelune', 'paniers@vertelune.example'),
    (124, time '21:00', null, 3, 'Nuit du conte', 'Cinq conteuses, cinq lieux, une lanterne pour chacun.',
     array['Spectacle', 'Bibliotheque'], 'Bourg de Morvelle', null, 'Les Lentibulles', null),
    (156, time '18:30', null, 4, 'Grand feu sur la butte', 'Repas tiré du sac, feu à la nuit tombée.',
     array['Vie du village', 'Repas'], 'Pré de la Grange', null, 'Morvelle Animation', null),
    -- Announced in words, or without any date.
    (null, null, 'tous les mardis', 2, 'Marche du mardi', 'Départ à l’allure du plus lent.', array['Sport'],
     'Place du Lavoir', null, 'Ainés rurauxs', null),
    (null, time '20:00', 'un samedi, à fixer', 3, 'Soirée cabaret', 'La date sera fixée avec les artistes.',
     array['Spectacle'], 'La Grange', null, 'La Grange', null),
    (null, null, 'dès que le temps s’y prêtera', 1, 'Chantier participatif du four à pain', 'Maçons amateurs et curieux bienvenus.',
     array['Atelier', 'Vie du village'], 'Four banal', null, 'La Boulangerie', null),
    (null, null, null, 0, 'Cherche accordéoniste', 'Pour faire danser les prochains bals.', array['Spectacle'], null, null, null, null),
    (null, null, null, 4, 'Prêt de tables et de bancs', 'Pour vos fêtes de famille, sur simple demande.', null, null, null,
     'Morvelle Animation', 'animation@morvelle.example')
) as annonce (jour, heure, mots, compte, titre, description, tags, lieu, link, organise_par, contact_email);

-- How long before the loading an event says that it was added; so its `ts`, which no member can
-- change, tells later when it was laid.
create function pg_temp.added_before(n bigint) returns interval language sql immutable as $$
    select make_interval(hours => 480, mins => 37 * n::int)
$$;

-- The row of an announcement that is loaded at that moment.
create function pg_temp.laid(annonce annonces, moment timestamptz) returns setof public.events
    language sql stable
as $$
    select ('5eed0000-0000-4000-8000-' || lpad(annonce.n::text, 12, '0'))::uuid,
           annonce.titre, annonce.description, annonce.tags, annonce.lieu, annonce.link,
           annonce.organise_par, 'published', annonce.contact_email,
           case annonce.compte when 0 then null
               else ('a0000000-0000-4000-8000-' || lpad(annonce.compte::text, 12, '0'))::uuid end,
           moment - pg_temp.added_before(annonce.n),
           case when not is_older then coalesce(annonce.mots, to_char(today + annonce.jour, 'YYYY-MM-DD')) end,
           case when not is_older then to_char(annonce.heure, 'HH24:MI') end,
           case when annonce.jour is not null and annonce.heure is not null
               then (today + annonce.jour + annonce.heure) at time zone 'Europe/Paris' end
    from (select (moment at time zone 'Europe/Paris')::date as today,
                 -- Older announcements carry the instant alone.
                 annonce.titre in ('Heure du conte', 'Café des parents', 'Yoga doux') as is_older
         ) as given
$$;

insert into public.events
select laid.* from annonces, lateral pg_temp.laid(annonces, now()) as laid
where (select yes from first_time);

update public.events as event
set (ts, date_texte, heure_texte, starts_at)
    = row (fresh.ts, fresh.date_texte, fresh.heure_texte, fresh.starts_at)
from annonces, lateral pg_temp.laid(annonces, now()) as fresh
where event.id = fresh.id
  and exists (
      select from pg_temp.laid(annonces, event.ts + pg_temp.added_before(annonces.n)) as before
      where event is not distinct from before
        and (event.ts + pg_temp.added_before(annonces.n)) at time zone 'Europe/Paris'
            < (now() at time zone 'Europe/Paris')::date);

drop function pg_temp.laid;
drop function pg_temp.added_before;
drop table annonces;
drop table first_time;
