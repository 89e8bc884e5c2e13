#pragma once

class QWidget;

namespace UndoKeys {

/// Leaves the keys of undo and redo to the window while \a field, a line edit or a spin box, has no typing of its own
/// to take back: fields claim these keys even then.
void leaveToWindow(QWidget *field);

} // namespace UndoKeys
