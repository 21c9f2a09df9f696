#include "service/Migrations.h"

#include "PlatformSql.h"
#include "service/Files.h"
#include "service/StartFailure.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

void runFile(Connection &connection, const fs::path &path)
{
    const auto text = readFile(path);
    if (!text)
        throw StartFailure("cannot read " + path.string());
    try {
        connection.runScript(*text);
    } catch (const DatabaseError &error) {
        throw StartFailure(path.string() + ": " + error.what() + " (" + error.sqlState + ')'
                           + (error.details ? "\n" + *error.details : ""));
    }
}

std::vector<fs::path> migrationsIn(const fs::path &folder)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".sql")
            files.push_back(entry.path());
    }
    if (files.empty())
        throw StartFailure("no migrations in " + folder.string());
    std::sort(files.begin(), files.end());
    return files;
}

void applyOnce(Connection &connection, const fs::path &file)
{
    const std::string stem = file.stem().string();
    const auto underscore = stem.find('_');
    const std::string version = stem.substr(0, underscore);
    const std::string name = underscore == std::string::npos ? "" : stem.substr(underscore + 1);
    Transaction transaction(connection);
    const Rows recorded = connection.run(
        "insert into supabase_migrations.schema_migrations (version, name, statements) "
        "values ($1, $2, array[$3]) on conflict do nothing returning version",
        {version, name, readFile(file).value_or("")});
    if (recorded.count() == 1)
        runFile(connection, file);
    transaction.commit();
}

void setSeedPassword(Connection &connection, const std::string &password)
{
    connection.run("update auth.users set encrypted_password = local_service.password_hash($1) "
                   "where coalesce(encrypted_password, '') = ''",
                   {password});
}

void seed(Connection &connection, const fs::path &file, const Options &options)
{
    std::error_code error;
    if (!fs::exists(file, error))
        return;
    Transaction transaction(connection);
    const Rows recorded = connection.run(
        "insert into supabase_migrations.seed_files (path, hash) "
        "select $1, encode(sha256(convert_to($2, 'UTF8')), 'hex') "
        "where not exists (select from supabase_migrations.seed_files) returning path",
        {file.filename().string(), readFile(file).value_or("")});
    const bool isFirst = recorded.count() == 1;
    if (isFirst || options.renewsSeed)
        runFile(connection, file);
    if (isFirst && options.seedPassword)
        setSeedPassword(connection, *options.seedPassword);
    transaction.commit();
}

/// A cluster of an earlier version compares texts byte by byte, and nothing can change that in it.
void tellOfOtherOrder(Connection &connection)
{
    const Rows rows =
        connection.run("select datlocprovider from pg_database where datname = current_database()");
    if (rows.text(0, 0) != "i") {
        std::fputs(
            "amorvelle-service: this database was made by an earlier version and orders "
            "accented texts otherwise than a hosted project; to begin anew, without what was "
            "entered, remove its folder\n",
            stderr);
    }
}

} // namespace

void migrate(Connection &connection, const Options &options)
{
    try {
        tellOfOtherOrder(connection);
        connection.runScript(platformSql);
        for (const fs::path &file : migrationsIn(options.supabase / "migrations"))
            applyOnce(connection, file);
        seed(connection, options.supabase / "seed.sql", options);
    } catch (const DatabaseError &error) {
        throw StartFailure(std::string("the database could not be prepared: ") + error.what());
    }
}
