#pragma once

/// Reads what fonts the desktop has, which takes a quarter of the start's work and is otherwise
/// done when the first text is measured. It needs no application object, and what is read is kept
/// for the whole process. Any thread, once the process's locale is set; on macOS it does nothing.
void readDesktopFonts();
