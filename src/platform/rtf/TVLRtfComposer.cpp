#include "TVLRtfComposer_p.h"

#include "TVLRtfScript_p.h"
#include "TVLTextFormat.h"
#include "TVLTextPicture_p.h"

#include <QBuffer>
#include <QImageReader>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int LevelHeadings = 9;

struct UnderlineRow
{
    QTextCharFormat::UnderlineStyle style;
    const char *word;
};

constexpr UnderlineRow UnderlineRows[] = {
    {QTextCharFormat::SingleUnderline, "\\ul"},
    {QTextCharFormat::DashUnderline, "\\uldash"},
    {QTextCharFormat::DotLine, "\\uld"},
    {QTextCharFormat::DashDotLine, "\\uldashd"},
    {QTextCharFormat::DashDotDotLine, "\\uldashdd"},
    {QTextCharFormat::WaveUnderline, "\\ulwave"},
    {QTextCharFormat::SpellCheckUnderline, "\\ulwave"},
};

struct CapitalizationRow
{
    QFont::Capitalization capitalization;
    const char *word;
};

constexpr CapitalizationRow CapitalizationRows[] = {
    {QFont::AllUppercase, "\\caps"},
    {QFont::SmallCaps, "\\scaps"},
    {QFont::AllLowercase, "\\tvllower"},
    {QFont::Capitalize, "\\tvlcapital"},
};

struct AlignmentRow
{
    Qt::AlignmentFlag alignment;
    const char *word;
};

constexpr AlignmentRow AlignmentRows[] = {
    {Qt::AlignLeft, "\\ql"},
    {Qt::AlignRight, "\\qr"},
    {Qt::AlignHCenter, "\\qc"},
    {Qt::AlignJustify, "\\qj"},
};

/** A text as one argument of a field's instruction. */
QString quoted(QString text)
{
    return u'"' + text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

/** In text from right to left a block's left is where lines start; RTF's is the page's left. */
Qt::Alignment alignmentOnPage(const QTextBlockFormat &format)
{
    const Qt::Alignment alignment = format.alignment();
    if (format.layoutDirection() != Qt::RightToLeft || (alignment & Qt::AlignAbsolute))
        return alignment;
    return alignment & Qt::AlignLeft ? Qt::AlignRight
        : alignment & Qt::AlignRight ? Qt::AlignLeft
                                     : alignment;
}

QStringList families(const QTextCharFormat &format)
{
    return format.fontFamilies().toStringList();
}

int halfPoints(const QTextCharFormat &format)
{
    constexpr double PointsPerPixel = 0.75;
    const double points = format.hasProperty(QTextFormat::FontPixelSize)
        ? format.intProperty(QTextFormat::FontPixelSize) * PointsPerPixel
        : format.fontPointSize();
    return qRound(points * 2);
}

void weightWords(const QTextCharFormat &format, QByteArray *words)
{
    if (format.hasProperty(QTextFormat::FontWeight) && format.fontWeight() != QFont::Normal) {
        if (format.fontWeight() >= QFont::DemiBold)
            words->append("\\b");
        if (format.fontWeight() != QFont::Bold)
            tvlAppendRtfWord(words, "tvlweight", format.fontWeight());
    }
}

void verticalAlignmentWords(const QTextCharFormat &format, QByteArray *words)
{
    switch (format.verticalAlignment()) {
    case QTextCharFormat::AlignNormal:
        break;
    case QTextCharFormat::AlignSuperScript:
        words->append("\\super");
        break;
    case QTextCharFormat::AlignSubScript:
        words->append("\\sub");
        break;
    default:
        tvlAppendRtfWord(words, "tvlvalign", format.verticalAlignment());
    }
}

bool isShifted(const QTextCharFormat &format)
{
    return format.verticalAlignment() == QTextCharFormat::AlignSuperScript
        || format.verticalAlignment() == QTextCharFormat::AlignSubScript;
}

} // namespace

TVLRtfComposer::TVLRtfComposer(const QTextDocument *document, const TVLRtfOptions &options)
    : mDocument(document)
    , mOptions(options)
{
}

QByteArray TVLRtfComposer::compose()
{
    QByteArray start = "{\\rtf1\\ansi\\ansicpg1252\\uc1";
    if (mOptions.mExporting)
        tvlAppendRtfWord(&start, "deff", mHeader.font({mDocument->defaultFont().family()}));
    mBody.reserve(qsizetype(mDocument->characterCount()) * 2);
    frame(mDocument->rootFrame()->begin(), 0, "\\par\n");
    start.append('\n').append(mHeader.tables());
    if (const QString title = mDocument->metaInformation(QTextDocument::DocumentTitle);
        !title.isEmpty()) {
        start.append("{\\info{\\title ");
        tvlAppendRtfText(&start, title);
        start.append("}}\n");
    }
    return start + mBody + "}\n";
}

void TVLRtfComposer::frame(QTextFrame::iterator it, int depth, const char *lastEnd)
{
    for (; !it.atEnd();) {
        QTextFrame *const child = it.currentFrame();
        const QTextBlock block = it.currentBlock();
        ++it;
        const char *end = it.atEnd() ? lastEnd : "\\par\n";
        if (auto *childTable = qobject_cast<QTextTable *>(child))
            table(childTable, depth + 1);
        else if (child)
            frame(child->begin(), depth, end);
        else if (block.isValid())
            paragraph(block, depth, end);
    }
}

// --- Paragraphs

void TVLRtfComposer::paragraph(const QTextBlock &block, int depth, const char *end)
{
    const QByteArray words = paragraphWords(block, depth);
    const QByteArray script = tvlRtfScriptGroup(block.blockFormat());
    if (words + script != mParagraphWords) {
        mBody.append("\\pard").append(words).append(' ').append(script);
        mParagraphWords = words + script;
    }
    listMarker(block);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        if (!mOptions.mExporting || !exportNote(it.fragment()))
            fragment(it.fragment());
    }
    finishInspectorNote();
    endNote();
    closeGroups();
    // In a cell's first block that format is the cell's own.
    const bool hasFormat = block.charFormat().objectType() != QTextFormat::TableCellObject;
    const bool opensGroup = hasFormat && useFormat(block.charFormat(), block.charFormatIndex());
    mBody.append(end);
    if (opensGroup)
        mBody.append('}');
}

QByteArray TVLRtfComposer::paragraphWords(const QTextBlock &block, int depth)
{
    QByteArray words;
    if (depth > 0)
        words.append("\\intbl");
    if (depth > 1)
        tvlAppendRtfWord(&words, "itap", depth);
    return words + blockFormatWords(block);
}

QByteArray TVLRtfComposer::blockFormatWords(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    QByteArray words;
    const auto number = [&words](const char *word, int value) {
        if (value != 0)
            tvlAppendRtfWord(&words, word, value);
    };
    int listLeft = 0;
    int listFirst = 0;
    if (const QTextList *list = block.textList()) {
        const int level = TVLRtfHeader::listLevel(list->format().indent());
        listLeft = TVLRtfHeader::listLeft(level);
        listFirst = TVLRtfHeader::listFirst();
        tvlAppendRtfWord(&words, "ls", mHeader.list(list));
        tvlAppendRtfWord(&words, "ilvl", level);
    }
    if (format.hasProperty(QTextFormat::BlockAlignment)
        || (mOptions.mExporting && format.layoutDirection() == Qt::RightToLeft)) {
        const Qt::Alignment alignment = alignmentOnPage(format);
        for (const AlignmentRow &row : AlignmentRows) {
            if (alignment & row.alignment) {
                words.append(row.word);
                break;
            }
        }
    }
    if (format.hasProperty(QTextFormat::LayoutDirection))
        words.append(format.layoutDirection() == Qt::RightToLeft ? "\\rtlpar" : "\\ltrpar");
    // In a list a missing indent would be the list's own.
    const auto indent = [&](const char *word, double margin, int listTwips) {
        const int twips = tvlToTwips(margin) + listTwips;
        if (twips != 0 || listTwips != 0)
            tvlAppendRtfWord(&words, word, twips);
    };
    indent("li", format.leftMargin(), listLeft);
    number("ri", tvlToTwips(format.rightMargin()));
    indent("fi", format.textIndent(), listFirst);
    number("sb", tvlToTwips(format.topMargin()));
    number("sa", tvlToTwips(format.bottomMargin()));
    switch (format.lineHeightType()) {
    case QTextBlockFormat::ProportionalHeight:
        tvlAppendRtfWord(&words, "sl", qRound(format.lineHeight() * 2.4));
        words.append("\\slmult1");
        break;
    case QTextBlockFormat::FixedHeight:
        tvlAppendRtfWord(&words, "sl", -tvlToTwips(format.lineHeight()));
        words.append("\\slmult0");
        break;
    case QTextBlockFormat::MinimumHeight:
        tvlAppendRtfWord(&words, "sl", tvlToTwips(format.lineHeight()));
        words.append("\\slmult0");
        break;
    case QTextBlockFormat::LineDistanceHeight:
        tvlAppendRtfWord(&words, "tvlsldist", tvlToTwips(format.lineHeight()));
        break;
    default:
        break;
    }
    number("tvlindent", format.indent());
    for (const QTextOption::Tab &tab : format.tabPositions()) {
        constexpr const char *TabWords[] = {"", "\\tqr", "\\tqc", "\\tqdec"};
        words.append(TabWords[tab.type]);
        tvlAppendRtfWord(&words, "tx", tvlToTwips(tab.position));
    }
    if (const QColor background = tvlSolidColor(format.background()); background.isValid())
        tvlAppendRtfWord(&words, "cbpat", mHeader.color(background));
    if (format.headingLevel() > 0 && format.headingLevel() <= LevelHeadings)
        tvlAppendRtfWord(&words, "outlinelevel", format.headingLevel() - 1);
    number("tvlmarker", int(format.marker()));
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore)
        words.append("\\pagebb");
    if (format.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysAfter)
        words.append("\\tvlpageba");
    if (format.nonBreakableLines())
        words.append("\\keep");
    if (format.boolProperty(TVLTextFormat::KeepWithNext))
        words.append("\\keepn");
    return words;
}

void TVLRtfComposer::listMarker(const QTextBlock &block)
{
    const QTextList *list = block.textList();
    if (!list)
        return;
    const int item = mItemCounts[list->objectIndex()]++;
    mBody.append("{\\listtext\\tab ");
    tvlAppendRtfText(&mBody, TVLRtfHeader::listMarker(list->format(), item));
    mBody.append("\\tab}");
}

// --- Characters

void TVLRtfComposer::fragment(const QTextFragment &fragment)
{
    run(fragment.charFormat(), fragment.charFormatIndex(), fragment.text());
}

void TVLRtfComposer::run(const QTextCharFormat &format, int formatIndex, const QString &text)
{
    openGroups(format);
    const bool opensGroup = useFormat(format, formatIndex);
    // LibreOffice comes down with a bookmark in a comment and another one behind it.
    const QStringList names =
        mOpenNote == NoteTarget::Comment ? QStringList() : format.anchorNames();
    bookmarks(names, "bkmkstart");
    if (format.isImageFormat()) {
        for (qsizetype i = 0; i < text.size(); ++i)
            picture(format);
    } else {
        tvlAppendRtfText(&mBody, text);
    }
    bookmarks(names, "bkmkend");
    if (opensGroup)
        mBody.append('}');
}

void TVLRtfComposer::bookmarks(const QStringList &names, const char *word)
{
    for (const QString &name : names) {
        if (name.isEmpty())
            continue;
        mBody.append("{\\*\\").append(word).append(' ');
        tvlAppendRtfText(&mBody, name);
        mBody.append('}');
    }
}

bool TVLRtfComposer::useFormat(const QTextCharFormat &format, int formatIndex)
{
    auto words = mCharWordsByFormat.constFind(formatIndex);
    if (words == mCharWordsByFormat.cend())
        words = mCharWordsByFormat.insert(formatIndex, charWords(format));
    return useWords(format, *words);
}

bool TVLRtfComposer::useWords(const QTextCharFormat &format, const QByteArray &words)
{
    // LibreOffice moves raised and lowered text elsewhere unless a group ends what raises it.
    const bool opensGroup = isShifted(format);
    if (opensGroup)
        mBody.append('{');
    else if (words == mCharWords)
        return false;
    else
        mCharWords = words;
    mBody.append("\\plain").append(words).append(' ');
    return opensGroup;
}

QByteArray TVLRtfComposer::charWords(const QTextCharFormat &format)
{
    QByteArray words;
    fontWords(format, &words);
    colorWords(format, &words);
    if (const int preset = format.intProperty(TVLTextFormat::PresetHighlight); preset > 0)
        tvlAppendRtfWord(&words, "tvlpreset", preset);
    if (format.boolProperty(TVLTextFormat::Hidden))
        words.append("\\v");
    return words;
}

void TVLRtfComposer::fontWords(const QTextCharFormat &format, QByteArray *words)
{
    QStringList names = families(format);
    int size = halfPoints(format);
    if (mOptions.mExporting) {
        if (names.isEmpty())
            names = QStringList(mDocument->defaultFont().family());
        if (size <= 0)
            size = qRound(mDocument->defaultFont().pointSizeF() * 2);
    }
    if (!names.isEmpty())
        tvlAppendRtfWord(words, "f", mHeader.font(names));
    if (size > 0)
        tvlAppendRtfWord(words, "fs", size);
    weightWords(format, words);
    if (format.fontItalic())
        words->append("\\i");
    if (format.boolProperty(TVLTextFormat::DoubleUnderline)) {
        words->append("\\uldb");
    } else {
        for (const UnderlineRow &row : UnderlineRows) {
            if (row.style == format.underlineStyle())
                words->append(row.word);
        }
    }
    if (format.fontStrikeOut())
        words->append("\\strike");
    if (format.fontOverline())
        words->append("\\tvlover");
    verticalAlignmentWords(format, words);
    for (const CapitalizationRow &row : CapitalizationRows) {
        if (row.capitalization == format.fontCapitalization())
            words->append(row.word);
    }
    if (format.fontLetterSpacingType() == QFont::AbsoluteSpacing
        && tvlToTwips(format.fontLetterSpacing()) != 0)
        tvlAppendRtfWord(words, "expndtw", tvlToTwips(format.fontLetterSpacing()));
    if (format.fontStretch() > 0 && format.fontStretch() != QFont::Unstretched)
        tvlAppendRtfWord(words, "charscalex", format.fontStretch());
}

void TVLRtfComposer::colorWords(const QTextCharFormat &format, QByteArray *words)
{
    const QColor foreground = tvlSolidColor(format.foreground());
    const bool isLink =
        mOptions.mExporting && mOptions.mDecorateHyperlinks && !format.anchorHref().isEmpty();
    if (foreground.isValid())
        tvlAppendRtfWord(words, "cf", mHeader.color(foreground));
    else if (isLink)
        tvlAppendRtfWord(words, "cf", mHeader.color(Qt::blue));
    if (isLink && format.underlineStyle() == QTextCharFormat::NoUnderline)
        words->append("\\ul");
    if (const QColor background = tvlSolidColor(format.background()); background.isValid()) {
        if (mOptions.mExporting && mOptions.mHighlightForMsWord)
            tvlAppendRtfWord(words, "highlight", wordHighlight(background));
        const int number = mHeader.color(background);
        words->append("\\chshdng0");
        tvlAppendRtfWord(words, "chcbpat", number);
        tvlAppendRtfWord(words, "cb", number);
    }
    if (const QColor underline = format.underlineColor(); underline.isValid())
        tvlAppendRtfWord(words, "ulc", mHeader.color(underline));
}

int TVLRtfComposer::wordHighlight(const QColor &color)
{
    constexpr std::array<QRgb, 16> Palette = {0xff000000, 0xff0000ff, 0xff00ffff, 0xff00ff00,
                                              0xffff00ff, 0xffff0000, 0xffffff00, 0xffffffff,
                                              0xff000080, 0xff008080, 0xff008000, 0xff800080,
                                              0xff800000, 0xff808000, 0xff808080, 0xffc0c0c0};
    const auto distance = [&color](QRgb other) {
        const int red = qRed(other) - color.red();
        const int green = qGreen(other) - color.green();
        const int blue = qBlue(other) - color.blue();
        return red * red + green * green + blue * blue;
    };
    const auto nearest =
        std::min_element(Palette.begin(), Palette.end(),
                         [&distance](QRgb a, QRgb b) { return distance(a) < distance(b); });
    return mHeader.color(QColor(*nearest));
}

// --- Links and comments

void TVLRtfComposer::openGroups(const QTextCharFormat &format)
{
    const QString comment = !mOptions.mExporting && TVLTextFormat::hasComment(format)
        ? TVLTextFormat::comment(format).mIdentity
        : QString();
    const QString address = format.anchorHref();
    const QString tip = address.isEmpty() ? QString() : format.toolTip();
    const QString link = address.isEmpty() ? QString() : address + u'\n' + tip;
    if (mComment.mKey != comment || mLink.mKey != link)
        closeGroup(&mLink);
    if (mComment.mKey != comment) {
        closeGroup(&mComment);
        openLinkGroup(&mComment, comment, TVLTextFormat::commentPrefix() + comment, {});
    }
    if (mLink.mKey != link)
        openLinkGroup(&mLink, link, address, tip);
}

void TVLRtfComposer::closeGroups()
{
    closeGroup(&mLink);
    closeGroup(&mComment);
}

void TVLRtfComposer::openLinkGroup(OpenGroup *group, const QString &key, const QString &address,
                                   const QString &tip)
{
    if (key.isEmpty())
        return;
    *group = {key, mCharWords};
    mBody.append("{\\field{\\*\\fldinst{HYPERLINK ");
    if (address.startsWith(u'#'))
        tvlAppendRtfText(&mBody, u"\\l "_s + quoted(address.mid(1)));
    else
        tvlAppendRtfText(&mBody, quoted(address));
    if (!tip.isEmpty())
        tvlAppendRtfText(&mBody, u" \\o "_s + quoted(tip));
    mBody.append("}}{\\fldrslt ");
}

void TVLRtfComposer::closeGroup(OpenGroup *group)
{
    if (group->mKey.isEmpty())
        return;
    mBody.append("}}");
    mCharWords = group->mWordsBefore;
    *group = {};
}

// --- Pictures

QByteArray TVLRtfComposer::pictureBytes(const QString &name) const
{
    const QVariant resource = mDocument->resource(QTextDocument::ImageResource, QUrl(name));
    if (resource.userType() == QMetaType::QByteArray && !mOptions.mExporting)
        return resource.toByteArray();
    return tvlPortablePicture(mDocument, name);
}

void TVLRtfComposer::picture(const QTextCharFormat &format)
{
    constexpr qsizetype BytesPerLine = 64;
    const QString name = format.stringProperty(QTextFormat::ImageName);
    // Within the application's own files one copy of the bytes serves all places.
    const bool isKnown = !mOptions.mExporting && mPicturesWritten.contains(name);
    mPicturesWritten.insert(name);
    QByteArray bytes = isKnown ? QByteArray() : pictureBytes(name);
    const QString kind = format.stringProperty(TVLTextFormat::PictureKind);

    mBody.append("{\\pict");
    if (!kind.isEmpty()) {
        mBody.append(kind.toLatin1());
    } else if (!bytes.isEmpty()) {
        mBody.append(tvlIsPng(bytes) ? "\\pngblip" : tvlIsJpeg(bytes) ? "\\jpegblip" : "\\tvlblip");
        QBuffer buffer(&bytes);
        const QSize size = mOptions.mExporting ? QImageReader(&buffer).size() : QSize();
        if (size.isValid()) {
            tvlAppendRtfWord(&mBody, "picw", size.width());
            tvlAppendRtfWord(&mBody, "pich", size.height());
        }
    }
    if (const double width = format.doubleProperty(QTextFormat::ImageWidth); width > 0)
        tvlAppendRtfWord(&mBody, "picwgoal", tvlToTwips(width));
    if (const double height = format.doubleProperty(QTextFormat::ImageHeight); height > 0)
        tvlAppendRtfWord(&mBody, "pichgoal", tvlToTwips(height));
    if (!mOptions.mExporting) {
        mBody.append("{\\*\\tvlname ");
        tvlAppendRtfText(&mBody, name);
        mBody.append('}');
    }
    for (qsizetype i = 0; i < bytes.size(); i += BytesPerLine)
        mBody.append('\n').append(bytes.mid(i, BytesPerLine).toHex());
    mBody.append('}');
}
