#include "TVLRtfCodePages_p.h"

#include <QHash>
#include <QTextCodec>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

constexpr int WesternPage = 1252;
constexpr int SymbolPage = 42;
constexpr int Utf8Page = 65001;

struct CharsetRow
{
    int charset;
    int page;
};

/** Character sets of fonts, by the numbers that Windows and the Macintosh gave them. */
constexpr CharsetRow CharsetRows[] = {
    {0, WesternPage}, {2, SymbolPage}, {77, 10000}, {78, 932},   {79, 949},   {80, 936},
    {81, 950},        {83, 10005},     {84, 10004}, {85, 10006}, {86, 10081}, {87, 10021},
    {88, 10029},      {89, 10007},     {128, 932},  {129, 949},  {130, 1361}, {134, 936},
    {136, 950},       {161, 1253},     {162, 1254}, {163, 1258}, {177, 1255}, {178, 1256},
    {186, 1257},      {204, 1251},     {222, 874},  {238, 1250}, {254, 437},  {255, 850},
};

struct CodecRow
{
    int page;
    const char *names; ///< The first that exists is taken.
};

constexpr CodecRow CodecRows[] = {
    {437, "IBM437 CP437"},
    {708, "ISO-8859-6"},
    {850, "IBM850 CP850"},
    {852, "IBM852 CP852"},
    {866, "IBM866 CP866"},
    {874, "TIS-620 windows-874 IBM874"},
    {932, "windows-31j CP932 Shift_JIS"},
    {936, "GBK GB18030 CP936"},
    {949, "windows-949 CP949 EUC-KR"},
    {950, "Big5 CP950 Big5-HKSCS"},
    {1361, "Johab windows-1361 ibm-1363"},
    {10000, "macintosh Apple Roman x-mac-roman"},
    {10001, "windows-31j CP932 Shift_JIS"},
    {10004, "x-mac-arabic windows-1256"},
    {10005, "x-mac-hebrew windows-1255"},
    {10006, "x-mac-greek windows-1253"},
    {10007, "x-mac-cyrillic windows-1251"},
    {10021, "x-mac-thai TIS-620"},
    {10029, "x-mac-centraleurroman windows-1250"},
    {10081, "x-mac-turkish windows-1254"},
};

QTextCodec *findCodec(const QByteArray &names)
{
    for (const QByteArray &name : names.split(' ')) {
        if (QTextCodec *codec = QTextCodec::codecForName(name))
            return codec;
    }
    return nullptr;
}

QTextCodec *codecOfPage(int page)
{
    for (const CodecRow &row : CodecRows) {
        if (row.page == page)
            return findCodec(row.names);
    }
    const QByteArray number = QByteArray::number(page);
    return findCodec("windows-" + number + " IBM" + number + " CP" + number);
}

bool isDoubleBytePage(int page)
{
    constexpr int DoubleBytePages[] = {932, 936, 949, 950, 1361, 10001};
    return std::find(std::begin(DoubleBytePages), std::end(DoubleBytePages), page)
        != std::end(DoubleBytePages);
}

} // namespace

TVLRtfCodePage::TVLRtfCodePage(int number, QTextCodec *codec)
    : mKind(number == Utf8Page             ? Kind::Utf8
                : number == SymbolPage     ? Kind::Symbol
                : isDoubleBytePage(number) ? Kind::DoubleByte
                                           : Kind::SingleByte)
    , mNumber(number)
    , mCodec(codec)
{
    for (int byte = 0; byte < 256; ++byte) {
        // What a page leaves open keeps its number, so that no byte is lost.
        char16_t character = static_cast<char16_t>(byte);
        if (mKind == Kind::Symbol && byte > 0x20) {
            character = symbol(char(byte)).unicode();
        } else if (byte >= 0x80 && mCodec) {
            const char bytes[] = {static_cast<char>(byte)};
            const QString text = mCodec->toUnicode(bytes, 1);
            if (text.size() == 1 && text.at(0) != QChar::ReplacementCharacter
                && !text.at(0).isNull())
                character = text.at(0).unicode();
        }
        mCharacters[byte] = character;
    }
}

const TVLRtfCodePage *TVLRtfCodePage::page(int number)
{
    static QHash<int, const TVLRtfCodePage *> byNumber;
    static std::vector<std::unique_ptr<const TVLRtfCodePage>> pages;
    if (const TVLRtfCodePage *known = byNumber.value(number))
        return known;
    QTextCodec *codec = codecOfPage(number);
    // Numbers are the file's to choose; only those that mean something are kept.
    if (!codec && number != SymbolPage && number != Utf8Page && number != WesternPage)
        return page(WesternPage);
    pages.emplace_back(new TVLRtfCodePage(number, codec));
    byNumber.insert(number, pages.back().get());
    return pages.back().get();
}

const TVLRtfCodePage *TVLRtfCodePage::pageOfCharset(int charset)
{
    for (const CharsetRow &row : CharsetRows) {
        if (row.charset == charset)
            return page(row.page);
    }
    return nullptr;
}

int TVLRtfCodePage::lengthByLead(unsigned char lead) const
{
    if (lead < 0x80)
        return 1;
    if (mKind == Kind::Utf8)
        return lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc0 ? 2 : 1;
    if (mNumber == 932 || mNumber == 10001)
        return lead == 0x80 || lead == 0xa0 || lead >= 0xfd || (lead >= 0xa1 && lead <= 0xdf) ? 1
                                                                                              : 2;
    return lead == 0x80 || lead == 0xff ? 1 : 2;
}

QString TVLRtfCodePage::decodeWhole(const QByteArray &bytes) const
{
    if (mKind == Kind::Utf8)
        return QString::fromUtf8(bytes);
    if (bytes.size() == 1 && static_cast<unsigned char>(bytes.at(0)) < 0x80)
        return QString(QLatin1Char(bytes.at(0)));
    return mCodec->toUnicode(bytes);
}

QString TVLRtfCodePage::decode(QByteArray *pending, char byte) const
{
    QString text;
    const bool goesOn = !pending->isEmpty()
        && (mKind == Kind::Utf8 ? (byte & 0xc0) == 0x80 : static_cast<unsigned char>(byte) >= 0x30);
    if (!pending->isEmpty() && !goesOn)
        text = flush(pending);
    pending->append(byte);
    if (pending->size() >= lengthByLead(static_cast<unsigned char>(pending->at(0)))) {
        text += decodeWhole(*pending);
        pending->clear();
    }
    return text;
}

QString TVLRtfCodePage::flush(QByteArray *pending) const
{
    if (pending->isEmpty())
        return {};
    const QString text = QString::fromLatin1(*pending);
    pending->clear();
    return text;
}
