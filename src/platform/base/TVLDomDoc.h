#pragma once

#include "TvlExport.h"

#include <QString>

#include <memory>

class QDomElement;
class QIODevice;
class QXmlStreamReader;

/**
 * A cursor over a `QDomDocument`, for small XML files of other programs. It stands on one element,
 * the work element, of which attributes and text are asked.
 *
 * A path is names of elements with a slash between them, from the document on when it begins with
 * one and else from the work element. Names are taken as they stand in the file, with their prefix.
 * Who asks for elements needs `Qt6::Xml`.
 *
 * Files come from anywhere: those that declare anything in a document type of their own, by which a
 * few bytes can stand for any amount of text, and those that are nested too deeply for what goes
 * through a tree, are refused.
 */
class TVL_EXPORT TVLDomDoc
{
public:
    TVLDomDoc();
    ~TVLDomDoc();
    Q_DISABLE_COPY_MOVE(TVLDomDoc)

    /**
     * Takes a file's content; the work element is then none. False when it isn't well-formed XML or
     * is refused; there is no document then, and errorString(), errorLine() and errorColumn() tell
     * what is wrong where.
     */
    [[nodiscard]] bool setContent(QIODevice *device);
    [[nodiscard]] bool setContent(const QString &text);

    [[nodiscard]] QString errorString() const; ///< Empty when nothing went wrong.
    [[nodiscard]] int errorLine() const; ///< [0]
    [[nodiscard]] int errorColumn() const; ///< [0]

    /** Moves to the first element at a path. False, and no move, if there is none. */
    bool cd(const QString &path);
    /** Moves on to the next sibling of a name, or of the last name of a path. False, and no move,
     * if there is none. */
    bool cdNext(const QString &name);

    /** Null before the first cd() that finds something. */
    [[nodiscard]] QDomElement currentElement() const;
    void setWorkElement(const QDomElement &element);
    /** The first element in the work element; null if there is none. */
    [[nodiscard]] QDomElement currentChild() const;

    /** Says which attribute getAttr() is to read; whether the work element has it. */
    bool find(const QString &attribute);
    /** The attribute of the work element that find() was last asked for, or @p defaultValue. */
    void getAttr(QString *value, const QString &defaultValue = {}, bool *found = nullptr) const;
    /** The text of the work element and of all that is in it. False if there is no work element. */
    bool get(QString *text) const;

private:
    struct Private;

    [[nodiscard]] bool read(QXmlStreamReader *xml);

    const std::unique_ptr<Private> d;
};
