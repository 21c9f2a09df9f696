#pragma once

/// Which of the desktop's two sets of colours the application wears.
enum class ColorScheme { Light, Dark };

/// How far what is faint stands out: with more of it secondary text does so by 7:1 and more, and
/// every line and edge by 3:1.
enum class Contrast { Usual, More };
