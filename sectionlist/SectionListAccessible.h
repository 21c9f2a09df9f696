#pragma once

/// Makes screen readers see a SectionList as a list of all its headings and rows: those without a
/// widget too, so that a reader walks from one to the next through the whole list. Giving such a
/// row the focus scrolls to it. Called once, before a reader can ask; further calls do nothing.
void installSectionListAccessibility();
