#pragma once

#include "TvlExport.h"

#include <QHash>
#include <QString>
#include <QStringList>

class QTextDocument;

/**
 * Writes a document as a web page: HTML 5, in XHTML's syntax where asked for, in UTF-8.
 *
 * - Headings, lists, tables, links, emphasis and pictures have the elements that mean them; fonts,
 *   colours and measures that differ from most of the text stand in `style` attributes.
 * - Footnotes, inline ones and the inspector's, are numbered and gathered behind the text; so are
 *   the inspector's comments, by letters. Inline annotations stay where they are, as remarks.
 * - A link to an item of the project has no meaning outside of it: its text stays, without a link.
 * - What no file of this kind can hold (control characters, half surrogate pairs) is left out.
 */
class TVL_EXPORT TVLTextXhtmlExporter
{
public:
    /** Where pictures go. */
    enum Pictures : int {
        PicturesInside = 0, ///< Into the page, as data.
        PicturesBeside = 1, ///< Into files of a folder beside the page, named `<page>_files`.
    };

    /** The document isn't owned, isn't changed, and has to live as long; null is an empty one. */
    explicit TVLTextXhtmlExporter(const QTextDocument *document);

    /**
     * Writes a page in place of what is at a path. False when the page or a picture can't be
     * written; see errorString().
     * @param pictures  one of Pictures
     */
    [[nodiscard]] bool toHtml(const QString &path, int pictures = PicturesBeside);
    /** toHtml() in the syntax of XML. */
    [[nodiscard]] bool toXhtml(const QString &path, int pictures = PicturesBeside);
    /**
     * A chapter of an electronic book: XHTML whose footnotes the reader's device shows as such,
     * with its pictures in files beside it.
     * @param linkTargets   addresses in the book for links into the project, by the address that
     *                      the link has in the text
     * @param pictureFiles  if given, gets the paths of the picture files
     * @param error         if given, gets errorString()
     */
    [[nodiscard]] bool toEPubXhtml(const QString &path, const QHash<QString, QString> &linkTargets,
                                   QStringList *pictureFiles, QString *error);

    /** What went wrong last, for a user; empty after a success. */
    [[nodiscard]] QString errorString() const { return mError; }

private:
    struct Page;
    [[nodiscard]] bool write(const QString &path, const Page &page, QStringList *pictureFiles);

    const QTextDocument *mDocument;
    QString mError;
};
