#pragma once

#include "TVLProjectChecksums.h"

using namespace Qt::StringLiterals;

/** Where the hashes of the document files are recorded. */
const QString RecordsFile = u"Files/Docs/docs.checksum"_s;

/** The hash that a file of that content is recorded with. */
[[nodiscard]] QByteArray hashOf(const QByteArray &content);

/** The key of a numbered file. */
[[nodiscard]] ChecksumKey key(const QString &name);
/** The key of a file in the folder of the item of a number. */
[[nodiscard]] ChecksumKey key(int number, const QString &name);

/** Path below the project's folder of a file in the folder of the item of a number. */
[[nodiscard]] QString desktopPath(int number, const QString &name);
/** Path below the project's folder of a file in that item's folder of the mobile copy. */
[[nodiscard]] QString mobilePath(int number, const QString &name);

/** A map as text, a line for each record, for a readable comparison. */
[[nodiscard]] QString toText(const ChecksumMap &checksums);
