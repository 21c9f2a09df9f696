#pragma once

#include <filesystem>

/// Ends the database server that a killed service has left on this cluster, if there is one, and
/// clears away what a killed server leaves behind. Only a running PostgreSQL whose working folder
/// is this cluster is touched. Call it only while holding the data folder.
void stopOrphanPostmaster(const std::filesystem::path &cluster);
