#pragma once

#include "TvlExport.h"

#include <QList>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QVariant>

/**
 * One kind of paragraph in a script, such as a scene heading: its name and its look.
 *
 * Of the formats that it is given an element keeps what the file of a script mode can hold:
 * alignment, indents, spacing, line height and page breaks of a paragraph; fonts, size, weight,
 * slant, lines, capitals and plain colours of its text.
 */
class TVL_EXPORT TVLScriptElement
{
public:
    TVLScriptElement() = default;
    explicit TVLScriptElement(const QString &name, const QTextBlockFormat &blockFormat = {},
                              const QTextCharFormat &charFormat = {});

    [[nodiscard]] QString name() const { return mName; }
    void setName(const QString &name) { mName = name; }
    [[nodiscard]] QTextBlockFormat blockFormat() const { return mBlockFormat; }
    void setBlockFormat(const QTextBlockFormat &format);
    [[nodiscard]] QTextCharFormat charFormat() const { return mCharFormat; }
    void setCharFormat(const QTextCharFormat &format);

    /** A list of elements as an option of a conversion. */
    [[nodiscard]] static QVariant toVariant(const QList<TVLScriptElement> &elements);
    /** What toVariant() took; empty for any other value. */
    [[nodiscard]] static QList<TVLScriptElement> toScriptElementList(const QVariant &variant);

    friend bool operator==(const TVLScriptElement &, const TVLScriptElement &) = default;

private:
    QString mName;
    QTextBlockFormat mBlockFormat;
    QTextCharFormat mCharFormat;
};
