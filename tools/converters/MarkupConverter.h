#pragma once

#include "Outcome.h"

#include "TVLFormat.h"

class TVLProgress;

/**
 * Converts by pandoc, which reads its input and opens no other file and no address. On the way to
 * rich text the pictures that belong to a document are put where pandoc finds them; see
 * withOwnPictures().
 *
 * Rich text isn't read by it, because it loses letters behind characters beyond ASCII: an office
 * makes DOCX of it first. Books are made of DOCX only: for them pandoc needs files of its own, and
 * so more rights, and what the office makes has its pictures in itself.
 */
class MarkupConverter
{
public:
    MarkupConverter(QString workFolder, TVLProgress *progress);

    [[nodiscard]] static bool canConvert(TVLFormat::Format from, TVLFormat::Format to);

    /** @p title is that of a book or a page without one. */
    [[nodiscard]] Outcome convert(const QString &source, TVLFormat::Format from,
                                  const QString &target, TVLFormat::Format to,
                                  const QString &title);

    /** Runs pandoc with these arguments, confined. */
    [[nodiscard]] Outcome run(const QStringList &arguments, const QString &result);

private:
    [[nodiscard]] Outcome toRichText(const QString &source, TVLFormat::Format from,
                                     const QString &target);
    [[nodiscard]] Outcome runFreely(const QStringList &arguments, const QString &result);

    QString mWorkFolder;
    TVLProgress *mProgress;
};
