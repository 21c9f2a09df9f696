#pragma once

/// Whether the desktop blends windows, so that a window may have see-through parts. It does
/// everywhere but on X11 without a compositing manager.
bool isComposited();
