#include "TVL.h"

#include "TVLWordTable_p.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr TVLWord<TVL::NodeType> NodeTypeWords[] = {
    {TVL::DraftFolder, u"DraftFolder"},
    {TVL::ResearchFolder, u"ResearchFolder"},
    {TVL::TrashFolder, u"TrashFolder"},
    {TVL::Folder, u"Folder"},
    {TVL::Text, u"Text"},
    {TVL::Image, u"Image"},
    {TVL::PDF, u"PDF"},
    {TVL::Media, u"Media"},
    {TVL::WebArchive, u"WebArchive"},
    {TVL::Other, u"Other"},
};
static_assert(std::size(NodeTypeWords) == TVL::Other + 1, "every node type has a word");

constexpr TVLWord<TVL::CollectionType> CollectionTypeWords[] = {
    {TVL::BinderCollection, u"Binder"},
    {TVL::RecentSearchCollection, u"RecentSearch"},
    {TVL::SavedSearchCollection, u"SavedSearch"},
    {TVL::ArbitraryCollection, u"Arbitrary"},
};

constexpr TVLWord<TVL::BinderVersion> BinderVersionTexts[] = {
    {TVL::BinderVersion1, u"1.0"},
    {TVL::BinderVersion2, u"1.5"},
    {TVL::BinderVersion3, u"2.0"},
};

struct SearchableDocument
{
    TVL::DocumentProperty property;
    TVL::DocumentType document;
};

constexpr SearchableDocument SearchableDocuments[] = {
    {TVL::TextProperty, TVL::MainText},
    {TVL::NotesProperty, TVL::NotesText},
    {TVL::SynopsisProperty, TVL::SynopsisText},
    {TVL::CommentsProperty, TVL::CommentsFile},
};

struct VersionPair
{
    TVL::FormatVersion format;
    TVL::BinderVersion binder;
};

constexpr VersionPair VersionPairs[] = {
    {TVL::FormatVersion16, TVL::BinderVersion1},
    {TVL::FormatVersion18, TVL::BinderVersion2},
    {TVL::FormatVersion23, TVL::BinderVersion3},
};

QString channelText(int channel)
{
    return QString::number(channel / 255.0, 'f', 3);
}

} // namespace

const QString TVL::KeywordsMimeType = u"application/x-tavelinor-keywords"_s;

QString TVL::wordOf(NodeType type)
{
    return tvlWordOf(NodeTypeWords, type, u"Text").toString();
}

TVL::NodeType TVL::toNodeType(QStringView word)
{
    return tvlValueOf(NodeTypeWords, word, TVL::Text);
}

QString TVL::wordOf(CollectionType type)
{
    return tvlWordOf(CollectionTypeWords, type, u"Arbitrary").toString();
}

TVL::CollectionType TVL::toCollectionType(QStringView word, CollectionType fallback)
{
    return tvlValueOf(CollectionTypeWords, word, fallback);
}

bool TVL::canConvertToDocType(DocumentProperty property)
{
    return std::any_of(std::begin(SearchableDocuments), std::end(SearchableDocuments),
                       [=](const SearchableDocument &row) { return row.property == property; });
}

TVL::DocumentType TVL::toDocumentType(DocumentProperty property)
{
    for (const SearchableDocument &row : SearchableDocuments) {
        if (row.property == property)
            return row.document;
    }
    return MainText;
}

TVL::DocumentProperty TVL::toDocumentProperty(DocumentType type)
{
    for (const SearchableDocument &row : SearchableDocuments) {
        if (row.document == type)
            return row.property;
    }
    return AllProperties;
}

QString TVL::toString(BinderVersion version)
{
    return tvlWordOf(BinderVersionTexts, version, QStringView()).toString();
}

TVL::BinderVersion TVL::toBinderVersion(QStringView text)
{
    return tvlValueOf(BinderVersionTexts, text, TVL::NoBinderVersion);
}

TVL::BinderVersion TVL::toBinderVersion(FormatVersion version)
{
    for (const VersionPair &pair : VersionPairs) {
        if (pair.format == version)
            return pair.binder;
    }
    return NoBinderVersion;
}

bool TVL::isValidFormatVersion(int version)
{
    return toBinderVersion(FormatVersion(version)) != NoBinderVersion;
}

QString TVL::colorToFloatString(const QColor &color)
{
    if (!color.isValid())
        return {};
    const QRgb rgb = color.rgb();
    return channelText(qRed(rgb)) + u' ' + channelText(qGreen(rgb)) + u' '
        + channelText(qBlue(rgb));
}

QColor TVL::floatStringToColor(QStringView text)
{
    const QList<QStringView> parts = text.split(u' ', Qt::SkipEmptyParts);
    if (parts.size() != 3)
        return {};
    int channels[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        const double value = parts.at(i).toDouble(&ok);
        if (!ok || !(value >= 0.0 && value <= 1.0))
            return {};
        channels[i] = int(std::lround(value * 255.0));
    }
    return QColor(channels[0], channels[1], channels[2]);
}

QString TVL::cleanFileName(const QString &name)
{
    static constexpr QStringView Refused = u"<>:\"/\\|?*";
    QString clean = name;
    for (QChar &ch : clean) {
        if (ch.category() == QChar::Other_Control || Refused.contains(ch))
            ch = u'_';
    }
    while (clean.endsWith(u'.') || clean.endsWith(u' '))
        clean.chop(1);
    return clean;
}

QString TVL::stripAutoNumberEnding(const QString &title, int *number)
{
    constexpr qsizetype MostDigits = 9;
    qsizetype digits = 0;
    const auto isDigit = [](QChar ch) { return ch >= u'0' && ch <= u'9'; };
    while (digits < title.size() && isDigit(title.at(title.size() - 1 - digits)))
        ++digits;
    const qsizetype stem = title.size() - digits - 1;
    const bool isNumbered =
        digits > 0 && digits <= MostDigits && stem >= 0 && title.at(stem) == u'-';
    *number = isNumbered ? QStringView(title).last(digits).toInt() : 0;
    return isNumbered ? title.left(stem) : title;
}

QStringList TVL::displayImageFormats()
{
    static const QStringList extensions = {
        u"bmp"_s, u"gif"_s, u"jpeg"_s, u"jpg"_s, u"png"_s, u"tif"_s, u"tiff"_s,
    };
    return extensions;
}

QString TVL::toHtmlTooltipFormat(const QString &plainText)
{
    if (plainText.isEmpty())
        return {};
    QString html = plainText.toHtmlEscaped();
    html.replace(u"\r\n"_s, u"\n"_s);
    html.replace(u'\n', u"<br/>"_s);
    return u"<p>"_s + html + u"</p>"_s;
}

bool tvlFuzzyCompare(double a, double b)
{
    // Relative for ordinary values, absolute near zero, where a relative test never holds.
    return std::abs(a - b) <= 1e-12 * std::max({1.0, std::abs(a), std::abs(b)});
}
