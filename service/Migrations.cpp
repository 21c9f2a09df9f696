#include "service/Migrations.h"

#include "PlatformSql.h"
#include "service/Files.h"
#include "service/StartFailure.h"

#include <algorithm>

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

void seedOnce(Connection &connection, const fs::path &file,
              const std::optional<std::string> &password)
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
    if (recorded.count() == 1) {
        runFile(connection, file);
        if (password) {
            connection.run("update auth.users set encrypted_password = "
                           "local_service.password_hash($1) "
                           "where coalesce(encrypted_password, '') = ''",
                           {*password});
        }
    }
    transaction.commit();
}

} // namespace

void migrate(Connection &connection, const fs::path &supabase,
             const std::optional<std::string> &seedPassword)
{
    try {
        connection.runScript(platformSql);
        for (const fs::path &file : migrationsIn(supabase / "migrations"))
            applyOnce(connection, file);
        seedOnce(connection, supabase / "seed.sql", seedPassword);
    } catch (const DatabaseError &error) {
        throw StartFailure(std::string("the database could not be prepared: ") + error.what());
    }
}
