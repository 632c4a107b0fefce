#pragma once

#include "TVL.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QTextDocument;
class TVLProjectNode;
class TVLTextDocument;

/**
 * Reads one of an item's texts from its file, past the model: a tool that looks at each text once
 * needs none of them to stay in memory. An item without such a file has an empty text. Null when
 * the file can't be read; @p error says why. Nothing on disk is changed.
 */
[[nodiscard]] std::unique_ptr<TVLTextDocument> readItemText(const QString &projectPath,
                                                            TVLProjectNode *node,
                                                            TVL::DocumentType type, QString *error);

/** A text as the tool writes it out: in UTF-8, with a line end behind each paragraph. */
[[nodiscard]] QByteArray plainTextOf(const QTextDocument &document);

/** How long a text is. */
struct TextLength
{
    qint64 words = 0;
    qint64 characters = 0; ///< In UTF-16 units, line ends among them.

    TextLength &operator+=(const TextLength &other);
};

[[nodiscard]] TextLength lengthOf(const TVLTextDocument &document);
