#pragma once

#include "support/PrivateBus.h"
#include "support/ViewMain.h"

/// The whole of main() for the tests of the program as it starts: those of a view, and a session
/// bus of their own.
template <typename Test>
int runOnDesktop(int argc, char *argv[])
{
    const PrivateBus bus;
    return runWithService<Test>(argc, argv);
}
