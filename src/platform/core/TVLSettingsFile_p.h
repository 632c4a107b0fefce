#pragma once

#include <QString>

// What everyone has to see to who gives the path of an ini file to QSettings.

/**
 * The path to give: the file's own, or where there is a pipe, a socket or a device, one at which
 * nothing can be. QSettings would open those, and a pipe lets nobody go before there is somebody at
 * its other end. What is set then stays in memory, and writing it fails.
 */
[[nodiscard]] QString tvlSettingsPath(const QString &path);

/**
 * Removes the file that settings guard their writing by, if its process was killed: they would wait
 * half a minute for one that doesn't say whose it is. That of a process that lives stays. To be
 * called before settings are written.
 */
void tvlRemoveLeftOverGuard(const QString &settingsPath);
