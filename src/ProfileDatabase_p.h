#pragma once

class QIODevice;

/// Drives ProfileHandler over the database in \a device, within limits that no honest database reaches.
/// \return whether the document was read to its end.
bool readProfileDatabase(QIODevice *device);
