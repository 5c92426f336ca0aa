// The colours of the windows.
#pragma once

namespace orv::app {

enum class Theme { system, light, dark };

/// Gives all windows the colours of a theme; `system` gives them those that they had when this
/// was called first.
void applyTheme(Theme theme);

}  // namespace orv::app
