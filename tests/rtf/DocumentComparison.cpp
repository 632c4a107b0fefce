#include "DocumentComparison.h"

#include "TVLTextFormat.h"

#include <QHash>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QString brushText(const QVariant &value)
{
    const QBrush brush = value.value<QBrush>();
    return brush.style() == Qt::NoBrush ? QString() : brush.color().name(QColor::HexArgb);
}

QString lengthValue(const QTextLength &length)
{
    return length.type() == QTextLength::VariableLength
        ? u"free"_s
        : u"%1:%2"_s.arg(length.type()).arg(length.rawValue(), 0, 'f', 2);
}

/** A property's value as text; empty when it is what holds without the property. */
QString valueText(int property, const QVariant &value)
{
    if (value.userType() == QMetaType::QBrush)
        return brushText(value);
    if (value.userType() == QMetaType::QColor)
        return value.value<QColor>().name(QColor::HexArgb);
    if (value.userType() == QMetaType::QTextLength)
        return lengthValue(value.value<QTextLength>());
    if (value.userType() == QMetaType::Double || value.userType() == QMetaType::Float)
        return qFuzzyIsNull(value.toDouble()) ? QString()
                                              : QString::number(value.toDouble(), 'f', 2);
    if (value.userType() == QMetaType::Bool)
        return value.toBool() ? u"yes"_s : QString();
    if (value.userType() == QMetaType::QStringList)
        return value.toStringList().join(u'|');
    if (property == QTextFormat::FontWeight && value.toInt() == QFont::Normal)
        return {};
    if (value.userType() == QMetaType::QVariantList) {
        QStringList texts;
        for (const QVariant &item : value.toList()) {
            if (item.canConvert<QTextOption::Tab>()) {
                const auto tab = item.value<QTextOption::Tab>();
                texts.append(u"%1/%2"_s.arg(tab.position).arg(tab.type));
            } else {
                texts.append(valueText(0, item));
            }
        }
        return texts.join(u',');
    }
    const QString text = value.toString();
    return text == u"0" ? QString() : text;
}

QString formatText(const QTextFormat &format)
{
    QStringList texts;
    const QMap<int, QVariant> properties = format.properties();
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        if (it.key() == QTextFormat::ObjectIndex)
            continue;
        if (it.key() == QTextFormat::FontLetterSpacingType
            && qFuzzyIsNull(format.doubleProperty(QTextFormat::FontLetterSpacing)))
            continue;
        // Each column without a constraint is what no constraints at all say.
        if (it.key() == QTextFormat::TableColumnWidthConstraints) {
            const QTextTableFormat table = format.toTableFormat();
            const QList<QTextLength> widths = table.columnWidthConstraints();
            if (std::all_of(widths.begin(), widths.end(), [](const QTextLength &length) {
                    return length.type() == QTextLength::VariableLength;
                }))
                continue;
            QStringList lengths;
            for (const QTextLength &length : widths)
                lengths.append(lengthValue(length));
            texts.append(u"widths=%1"_s.arg(lengths.join(u',')));
            continue;
        }
        if (const QString value = valueText(it.key(), it.value()); !value.isEmpty())
            texts.append(u"%1=%2"_s.arg(it.key(), 0, 16).arg(value));
    }
    return texts.join(u' ');
}

/** What a document's structure is like, a line per thing, in order. */
class ContentDescriber
{
public:
    QStringList describe(const QTextDocument &document)
    {
        mDocument = &document;
        mLines.append(u"title "_s + document.metaInformation(QTextDocument::DocumentTitle));
        frame(document.rootFrame()->begin());
        return mLines;
    }

private:
    void frame(QTextFrame::iterator it)
    {
        for (; !it.atEnd(); ++it) {
            if (auto *table = qobject_cast<QTextTable *>(it.currentFrame()))
                describeTable(table);
            else if (it.currentFrame())
                frame(it.currentFrame()->begin());
            else if (it.currentBlock().isValid())
                block(it.currentBlock());
        }
    }

    void describeTable(QTextTable *table)
    {
        mLines.append(u"table %1x%2 %3"_s.arg(table->rows())
                          .arg(table->columns())
                          .arg(formatText(table->format())));
        for (int row = 0; row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                const QTextTableCell cell = table->cellAt(row, column);
                if (cell.row() != row || cell.column() != column)
                    continue;
                QTextCharFormat format = cell.format();
                format.clearProperty(QTextFormat::TableCellRowSpan);
                format.clearProperty(QTextFormat::TableCellColumnSpan);
                mLines.append(u"cell %1,%2 %3x%4 %5"_s.arg(row)
                                  .arg(column)
                                  .arg(cell.rowSpan())
                                  .arg(cell.columnSpan())
                                  .arg(formatText(format)));
                frame(cell.begin());
            }
        }
        mLines.append(u"table end"_s);
    }

    void block(const QTextBlock &block)
    {
        mLines.append(u"block "_s + formatText(block.blockFormat()));
        // The first block of a cell has the cell's own format there.
        if (block.charFormat().objectType() != QTextFormat::TableCellObject)
            mLines.append(u"mark "_s + formatText(block.charFormat()));
        if (const QTextList *list = block.textList()) {
            const int number = mLists.value(list->objectIndex(), int(mLists.size()));
            mLists.insert(list->objectIndex(), number);
            QTextListFormat format = list->format();
            if (format.numberSuffix() == u"." && format.hasProperty(QTextFormat::ListNumberSuffix))
                format.clearProperty(QTextFormat::ListNumberSuffix);
            const bool emptySuffix = format.hasProperty(QTextFormat::ListNumberSuffix)
                && format.numberSuffix().isEmpty();
            mLines.append(u"item %1 of list %2 %3 %4"_s.arg(list->itemNumber(block))
                              .arg(number)
                              .arg(formatText(format))
                              .arg(emptySuffix));
        }
        QString lastFormat;
        QString text;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QString format = formatText(it.fragment().charFormat());
            if (format != lastFormat && !text.isEmpty())
                mLines.append(u"run '%1' %2"_s.arg(std::exchange(text, {}), lastFormat));
            lastFormat = format;
            text += it.fragment().text();
            picture(it.fragment().charFormat());
        }
        if (!text.isEmpty())
            mLines.append(u"run '%1' %2"_s.arg(text, lastFormat));
    }

    void picture(const QTextCharFormat &format)
    {
        if (!format.isImageFormat())
            return;
        const QVariant resource =
            mDocument->resource(QTextDocument::ImageResource, QUrl(format.toImageFormat().name()));
        mLines.append(u"picture "_s + QString::fromLatin1(resource.toByteArray().toHex()));
    }

    const QTextDocument *mDocument = nullptr;
    QStringList mLines;
    QHash<int, int> mLists;
};

} // namespace

QString differenceOfDocuments(const QTextDocument &a, const QTextDocument &b)
{
    const QStringList first = ContentDescriber().describe(a);
    const QStringList second = ContentDescriber().describe(b);
    for (qsizetype i = 0; i < qMax(first.size(), second.size()); ++i) {
        if (first.value(i) != second.value(i))
            return u"line %1:\n  %2\n  %3"_s.arg(i).arg(first.value(i), second.value(i));
    }
    return {};
}
