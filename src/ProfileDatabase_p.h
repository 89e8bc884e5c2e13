#pragma once

class QIODevice;

/// Drives ProfileHandler over the database in \a device, within limits far above what ten profiles need.
/// \return whether the document was read to its end.
bool readProfileDatabase(QIODevice *device);
