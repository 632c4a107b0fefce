#include "TVLScriptMode.h"

#include "TVLCoreUtil.h"
#include "TVLErrorText_p.h"
#include "TVLScriptFormats_p.h"
#include "TVLTextFormat.h"
#include "TVLXmlReading_p.h"

#include <QCoreApplication>
#include <QFont>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace {

const QString RootTag = u"ScriptFormat"_s;
const QString ElementTag = u"Element"_s;
const QString ParagraphTag = u"Paragraph"_s;
const QString TextTag = u"Text"_s;
const QString VersionAttribute = u"Version"_s;
const QString TitleAttribute = u"Title"_s;
const QString FileVersion = u"1.0"_s;

// --- The screenplay

constexpr int PointsPerInch = 72;
constexpr double ScreenplayFontSize = 12;

enum ElementFlag {
    Plain = 0,
    Capitals = 1,
    RightAligned = 2,
    LeadsOn = 4, ///< Isn't left alone at the end of a page.
};

/** Indents are in inches, from margins that leave six inches of text; the space is in lines. */
struct ElementRow
{
    const char *name;
    double leftIndent;
    double rightIndent;
    int linesBefore;
    int flags;
};

constexpr ElementRow ScreenplayRows[] = {
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Scene Heading"), 0, 0, 2, Capitals | LeadsOn},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Action"), 0, 0, 1, Plain},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Character"), 2.2, 0, 1, Capitals | LeadsOn},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Parenthetical"), 1.6, 2, 0, LeadsOn},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Dialogue"), 1, 1.5, 0, Plain},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Transition"), 4, 0, 1, Capitals | RightAligned},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "Shot"), 0, 0, 2, Capitals | LeadsOn},
    {QT_TRANSLATE_NOOP("TVLScriptMode", "General"), 0, 0, 0, Plain},
};

QString translated(const char *text)
{
    return QCoreApplication::translate("TVLScriptMode", text);
}

TVLScriptElement elementOf(const ElementRow &row)
{
    QTextBlockFormat block;
    block.setAlignment((row.flags & RightAligned) != 0 ? Qt::AlignRight : Qt::AlignLeft);
    block.setLeftMargin(row.leftIndent * PointsPerInch);
    block.setRightMargin(row.rightIndent * PointsPerInch);
    block.setTopMargin(row.linesBefore * ScreenplayFontSize);
    if ((row.flags & LeadsOn) != 0)
        block.setProperty(TVLTextFormat::KeepWithNext, true);

    QTextCharFormat text;
    text.setFontFamilies({u"Courier Prime"_s, u"Courier New"_s, u"Courier"_s});
    text.setFontPointSize(ScreenplayFontSize);
    if ((row.flags & Capitals) != 0)
        text.setFontCapitalization(QFont::AllUppercase);
    return TVLScriptElement(translated(row.name), block, text);
}

// --- XML

void writeFormat(QXmlStreamWriter *writer, const QString &tag, const QTextFormat &format,
                 TVLScriptFormats::Scope scope)
{
    writer->writeStartElement(tag);
    const auto attributes = TVLScriptFormats::toAttributes(format, scope);
    for (const auto &[name, text] : attributes)
        writer->writeAttribute(name, text);
    writer->writeEndElement();
}

void readFormat(QXmlStreamReader *reader, TVLScriptFormats::Scope scope, QTextFormat *format)
{
    const QString badName = TVLScriptFormats::fromAttributes(reader->attributes(), scope, format);
    if (!badName.isEmpty())
        reader->raiseError(translated("Invalid value of %1").arg(badName));
    else
        reader->skipCurrentElement();
}

TVLScriptElement readElement(QXmlStreamReader *reader)
{
    const QString name = reader->attributes().value(TitleAttribute).toString();
    QTextBlockFormat block;
    QTextCharFormat text;
    while (reader->readNextStartElement()) {
        if (reader->name() == ParagraphTag)
            readFormat(reader, TVLScriptFormats::BlockScope, &block);
        else if (reader->name() == TextTag)
            readFormat(reader, TVLScriptFormats::CharScope, &text);
        else
            reader->skipCurrentElement();
    }
    return TVLScriptElement(name, block, text);
}

TVLScriptMode readMode(QXmlStreamReader *reader)
{
    TVLScriptMode mode;
    if (reader->readNextStartElement() && reader->name() != RootTag)
        reader->raiseError(translated("Not a script mode"));
    mode.mTitle = reader->attributes().value(TitleAttribute).toString();
    while (reader->readNextStartElement()) {
        if (reader->name() == ElementTag)
            mode.mElements.append(readElement(reader));
        else
            reader->skipCurrentElement();
    }
    // What follows the root has to be XML too, or the file isn't whole.
    tvlReadToEnd(reader);
    return mode;
}

} // namespace

TVLScriptMode TVLScriptMode::factoryDefaults()
{
    TVLScriptMode mode;
    mode.mTitle = translated(QT_TRANSLATE_NOOP("TVLScriptMode", "Screenplay"));
    for (const ElementRow &row : ScreenplayRows)
        mode.mElements.append(elementOf(row));
    return mode;
}

QByteArray TVLScriptMode::toXml() const
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(RootTag);
    writer.writeAttribute(VersionAttribute, FileVersion);
    writer.writeAttribute(TitleAttribute, mTitle);
    for (const TVLScriptElement &element : mElements) {
        writer.writeStartElement(ElementTag);
        writer.writeAttribute(TitleAttribute, element.name());
        writeFormat(&writer, ParagraphTag, element.blockFormat(), TVLScriptFormats::BlockScope);
        writeFormat(&writer, TextTag, element.charFormat(), TVLScriptFormats::CharScope);
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();

    // XML that would be read as another mode, or not at all, must not take a file's place.
    TVLScriptMode readBack;
    return readBack.fromXml(xml) && readBack == *this ? xml : QByteArray();
}

bool TVLScriptMode::fromXml(const QByteArray &xml, QString *error)
{
    QXmlStreamReader reader(xml);
    // A mode's file has no entities of its own.
    reader.setEntityExpansionLimit(0);
    TVLScriptMode mode = readMode(&reader);
    if (reader.hasError())
        return tvlFail(error, reader.errorString());
    *this = std::move(mode);
    return true;
}

bool TVLScriptMode::load(const QString &filePath, QString *error)
{
    if (!TVLCoreUtil::IsReadable(filePath, error))
        return false;
    bool isRead = false;
    const QByteArray xml = TVLCoreUtil::ReadBinaryFile(filePath, &isRead);
    if (!isRead && error)
        *error = translated("The file can't be read");
    return isRead && fromXml(xml, error);
}
