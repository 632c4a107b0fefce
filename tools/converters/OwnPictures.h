#pragma once

#include <QByteArray>
#include <QString>

/**
 * A document as pandoc hands it on, in JSON, with only such pictures as are its own: those that
 * stand in it, those that pandoc has taken out of it into the work folder, and those that it links
 * to and that lie in its source's folder or below. These become files in the work folder. All
 * others become their descriptions, so that whoever writes the document has nothing else to open.
 * Empty if it isn't JSON.
 */
[[nodiscard]] QByteArray withOwnPictures(const QByteArray &json, const QString &sourceFolder,
                                         const QString &workFolder);
