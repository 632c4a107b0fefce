#pragma once

#include <QByteArray>
#include <QString>

// How a project's own files are written: whole, in place, and never where somebody else's words
// are.

/**
 * Writes a file in place. A link isn't written through: what it leads to isn't the project's. The
 * arguments are those of TVLCoreUtil::WriteBinaryFile().
 */
[[nodiscard]] bool tvlWriteOwnFile(const QByteArray &bytes, const QString &path, QString *error,
                                   bool *couldOpen = nullptr);

/**
 * Writes a file that can be made anew from others. A link in its place, or a second name of a file
 * that lies elsewhere too, is replaced by a file of its own.
 */
[[nodiscard]] bool tvlWriteDerivedFile(const QByteArray &bytes, const QString &path,
                                       QString *error);
