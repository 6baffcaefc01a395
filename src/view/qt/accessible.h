// What screen readers see of the view's own widgets.

#pragma once

namespace cvl {

/// Makes the toolkit use the interfaces of this file. Call it once per process, before the first
/// window.
///
/// Buttons have the role and the press action of a push button. Drop-down boxes have their own
/// names; the toolkit's interface has the chosen entry as the name, which leaves no way to name
/// the box itself.
void InstallAccessibility();

}  // namespace cvl
