#pragma once

#include <QString>

class QUndoStack;

/// The list "Project Swatches" of the library: the colours that the project carries with it.
namespace ProjectSwatches {

/// The list's name.
QString listId();

/// The uid under which the project has the library's colour \a uid: its own, or that of a copy in the list that is
/// the same colour still. Empty where it has none.
QString exposed(const QString &uid);

/// The uid under which the project may use the library's colour \a uid: that of its copy in the list, which is made
/// where there is none, as a step on \a undo. Empty for an unknown uid.
QString expose(const QString &uid, QUndoStack *undo);

} // namespace ProjectSwatches
