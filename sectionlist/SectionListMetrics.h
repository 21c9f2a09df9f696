#pragma once

/// The lengths of a SectionList in pixels. The edge of the pane that it lies in covers 1 px of it
/// at the left, the right and the bottom; rows begin beside it, so that it does not hinder
/// scrolling.
namespace SectionListMetrics {

inline constexpr int edge = 1;
inline constexpr int topPadding = 4;
inline constexpr int textLeft = 12 - edge; ///< within the rows, as the next one
inline constexpr int fillLeft = 4 - edge;
inline constexpr int gutter = 12; ///< right of the rows, for the scroll thumb
inline constexpr int textRight = 8; ///< from the end of the row's fill
inline constexpr int rowPadding = 4; ///< above and below a row's own height
inline constexpr int fillTop = 3; ///< hairline, then 2 px: the fills stand evenly around it
inline constexpr int fillBottom = 2;
inline constexpr int fillRadius = 6;
inline constexpr int headingHeight = 30;
inline constexpr int headingPadding = 12; ///< above and below the line of text, together
inline constexpr int headingDrop = 2; ///< how much lower the text stands when not stuck
inline constexpr int margin = 100; ///< rows this near to the view have widgets
inline constexpr int wheelLine = 20;

} // namespace SectionListMetrics
