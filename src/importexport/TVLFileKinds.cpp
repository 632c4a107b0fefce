#include "TVLFileKinds.h"

#include "TVLGuiUtil.h"
#include "TVLTextFiles.h"
#include "TvlMedia.h"

#include <QTextDocument>

namespace {

/** When the words of a file become a text. */
enum class Words {
    Always,
    InDraft, ///< And elsewhere it is kept as it is.
    OnRequest, ///< In the Draft, and elsewhere if the user wants the words of web pages.
};

struct FileKindRow
{
    QStringView suffix;
    TVL::NodeType type;
    Words words;
    TVLFileKinds::Reader reader;
    bool isOutline;
};

// Pictures, sound and film, which the machine has a say in, aren't here.
constexpr FileKindRow FileKindRows[] = {
    {u"txt", TVL::Text, Words::Always, tvlReadPlainTextFile, false},
    {u"rtf", TVL::Text, Words::Always, tvlReadRichTextFile, false},
    {u"fdx", TVL::Other, Words::Always, nullptr, false},
    {u"fountain", TVL::Other, Words::Always, nullptr, false},
    {u"opml", TVL::Other, Words::Always, nullptr, true},
    {u"mm", TVL::Other, Words::Always, nullptr, true},
    {u"html", TVL::WebArchive, Words::OnRequest, nullptr, false},
    {u"htm", TVL::WebArchive, Words::OnRequest, nullptr, false},
    {u"mht", TVL::WebArchive, Words::InDraft, nullptr, false},
    {u"webarchive", TVL::WebArchive, Words::Always, nullptr, false},
    {u"pdf", TVL::PDF, Words::InDraft, nullptr, false},
    {u"psd", TVL::Image, Words::Always, nullptr, false},
};

const FileKindRow *fileKindRow(const QString &suffix)
{
    for (const FileKindRow &row : FileKindRows) {
        if (row.suffix.compare(suffix, Qt::CaseInsensitive) == 0)
            return &row;
    }
    return nullptr;
}

bool isImageOrMedia(const QString &suffix)
{
    return TVL::displayImageFormats().contains(suffix)
        || TvlMedia::displayMediaFormats().contains(suffix);
}

Words wordsOf(const QString &suffix)
{
    if (const FileKindRow *row = fileKindRow(suffix))
        return row->words;
    // What nobody knows may have words that a converter knows how to get.
    return isImageOrMedia(suffix.toLower()) ? Words::InDraft : Words::Always;
}

} // namespace

TVL::NodeType TVLFileKinds::suffixToNodeType(const QString &suffix)
{
    if (const FileKindRow *row = fileKindRow(suffix))
        return row->type;
    if (TVLGuiUtil::readWriteImageFormats().contains(suffix.toLower()))
        return TVL::Image;
    return TvlMedia::displayMediaFormats().contains(suffix.toLower()) ? TVL::Media : TVL::Other;
}

TVLFileKinds::Reader TVLFileKinds::textReader(const QString &suffix)
{
    const FileKindRow *row = fileKindRow(suffix);
    return row ? row->reader : nullptr;
}

bool TVLFileKinds::isOutline(const QString &suffix)
{
    const FileKindRow *row = fileKindRow(suffix);
    return row && row->isOutline;
}

bool TVLFileKinds::becomesText(const QString &suffix, bool isInDraft, bool isHtmlText)
{
    switch (wordsOf(suffix)) {
    case Words::Always:
        return true;
    case Words::InDraft:
        return isInDraft;
    case Words::OnRequest:
        return isInDraft || isHtmlText;
    }
    return false;
}
