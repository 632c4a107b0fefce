#include "RandomScreenplay.h"

#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = TVLScreenplayKind;
using Style = TVLScreenplayRun::Style;

constexpr QChar LineEnd = QChar::LineSeparator;

bool oneIn(QRandomGenerator *random, int count)
{
    return random->bounded(count) == 0;
}

const QStringList &pieces(RandomTexts texts)
{
    static const QStringList nasty = {
        u"*"_s,       u"_"_s,
        u"["_s,       u"]"_s,
        u"/"_s,       u"\\"_s,
        u"#"_s,       u"@"_s,
        u"!"_s,       u"."_s,
        u">"_s,       u"<"_s,
        u"~"_s,       u"="_s,
        u"^"_s,       u":"_s,
        u"("_s,       u")"_s,
        u" "_s,       u"  "_s,
        u"\t"_s,      u"&"_s,
        u"a"_s,       u"B"_s,
        u"1"_s,       QString(LineEnd),
        u"**"_s,      u"/*"_s,
        u"*/"_s,      u"[["_s,
        u"]]"_s,      u"INT. "_s,
        u"TO:"_s,     u"==="_s,
        u"\u00e9"_s,  u"\U0001F3AC"_s,
        u"Title: "_s, u"/*:element Shot*/"_s,
        u"#1#"_s,
    };
    static const QStringList likely = {
        u"rain "_s,  u"the door "_s, u"STEEL "_s,     u"EXT. ROAD - DAY "_s,
        u"(beat)"_s, u"CUT TO:"_s,   u"she said, "_s, u"d\u00e9j\u00e0 vu "_s,
        u"5 * 3 "_s, u"[sic] "_s,    u"and/or "_s,    u"#7 "_s,
        u"Act: "_s,  u"... "_s,      u"well "_s,      u"NO "_s,
    };
    return texts == RandomTexts::Nasty ? nasty : likely;
}

QString randomText(QRandomGenerator *random, RandomTexts texts)
{
    QString text;
    for (int count = random->bounded(6); count > 0; --count)
        text += pieces(texts).at(random->bounded(int(pieces(texts).size())));
    return text;
}

quint8 randomStyles(QRandomGenerator *random)
{
    constexpr quint8 Aparts[] = {Style::Note, Style::Footnote, Style::Boneyard};
    quint8 styles = quint8(random->bounded(8));
    if (oneIn(random, 6))
        styles |= Aparts[random->bounded(3)];
    return styles;
}

void addComments(QRandomGenerator *random, RandomTexts texts, TVLScreenplayParagraph *paragraph)
{
    int start = 0;
    const int size = int(paragraph->mText.size());
    while (start < size && oneIn(random, 2)) {
        start += random->bounded(size - start);
        const int length = 1 + random->bounded(size - start);
        paragraph->mComments.push_back(
            {start, length, randomText(random, texts), oneIn(random, 2)});
        start += length;
    }
}

void addExtras(QRandomGenerator *random, TVLScreenplayParagraph *paragraph)
{
    constexpr int Alignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignJustify};
    if (oneIn(random, 12))
        paragraph->mStartsPage = true;
    if (oneIn(random, 4) && paragraph->mKind == Kind::SceneHeading)
        paragraph->mSceneNumber = oneIn(random, 4) ? u"1 #;/*"_s : u"12-A.1"_s;
    if (oneIn(random, 4) && paragraph->mKind == Kind::Character)
        paragraph->mIsDual = true;
    if (oneIn(random, 4) && paragraph->mKind == Kind::Action)
        paragraph->mAlignment = Qt::AlignHCenter;
    if (oneIn(random, 20)) {
        const int alignment = Alignments[random->bounded(3)];
        const int own = paragraph->mKind == Kind::Transition ? Qt::AlignRight : Qt::AlignLeft;
        paragraph->mAlignment = alignment == own ? 0 : alignment;
    }
}

TVLScreenplayParagraph randomParagraph(QRandomGenerator *random, RandomTexts texts)
{
    TVLScreenplayParagraph paragraph(Kind(random->bounded(ScreenplayKindCount)));
    if (paragraph.mKind == Kind::Other)
        paragraph.mType = oneIn(random, 2) ? u"Cast List"_s : u"a;b*/%[["_s;
    if (paragraph.mKind == Kind::Section)
        paragraph.mDepth = 1 + random->bounded(8);
    for (int count = random->bounded(5); count > 0; --count)
        paragraph.append(randomText(random, texts),
                         oneIn(random, 2) ? randomStyles(random) : quint8(Style::Plain));
    if (oneIn(random, 8))
        addComments(random, texts, &paragraph);
    addExtras(random, &paragraph);
    return paragraph;
}

QString words(QRandomGenerator *random, int count)
{
    static const QStringList some = {
        u"rain"_s,  u"over"_s, u"the"_s,   u"city"_s, u"a"_s,     u"door"_s,
        u"opens"_s, u"slow"_s, u"and"_s,   u"he"_s,   u"waits"_s, u"nothing"_s,
        u"light"_s, u"her"_s,  u"hands"_s, u"turn"_s, u"away"_s,  u"caf\u00e9"_s,
    };
    QString text;
    for (int i = 0; i < count; ++i)
        text += (i > 0 ? u" "_s : QString()) + some.at(random->bounded(int(some.size())));
    text[0] = text.at(0).toUpper();
    return text;
}

TVLScreenplayParagraph plain(Kind kind, const QString &text)
{
    TVLScreenplayParagraph paragraph(kind);
    paragraph.append(text);
    return paragraph;
}

void addSpeech(QRandomGenerator *random, TVLScreenplay *film, bool isDual)
{
    static const QStringList names = {u"STEEL"_s, u"MARA (V.O.)"_s, u"McADAMS"_s, u"R2"_s};
    auto &paragraphs = film->mParagraphs;
    paragraphs.push_back(plain(Kind::Character, names.at(random->bounded(int(names.size())))));
    paragraphs.back().mIsDual = isDual;
    if (oneIn(random, 3))
        paragraphs.push_back(plain(Kind::Parenthetical, u"(beat)"_s));
    paragraphs.push_back(plain(Kind::Dialogue, words(random, 12) + u'.'));
    if (oneIn(random, 4)) {
        paragraphs.back().append(u" ");
        paragraphs.back().append(words(random, 2), Style::Italic);
    }
}

} // namespace

TVLScreenplay makeRandomScreenplay(QRandomGenerator *random, RandomTexts texts)
{
    TVLScreenplay screenplay;
    for (int count = 1 + random->bounded(12); count > 0; --count) {
        screenplay.mParagraphs.push_back(randomParagraph(random, texts));
        // Characters are rarely left without a word.
        if (screenplay.mParagraphs.back().mKind == Kind::Character && !oneIn(random, 4)) {
            screenplay.mParagraphs.push_back(randomParagraph(random, texts));
            auto &speech = screenplay.mParagraphs.back();
            speech.mKind = oneIn(random, 2) ? Kind::Dialogue : Kind::Parenthetical;
            speech.mType.clear();
            speech.mDepth = 0;
            speech.mSceneNumber.clear();
            speech.mIsDual = false;
            speech.mAlignment = 0;
        }
    }
    return screenplay;
}

QString makeRandomFountain(QRandomGenerator *random)
{
    QString text;
    for (int count = random->bounded(60); count > 0; --count) {
        text += oneIn(random, 3) ? u"\n"_s
                                 : pieces(RandomTexts::Nasty)
                                       .at(random->bounded(int(pieces(RandomTexts::Nasty).size())));
    }
    return text;
}

TVLScreenplay makeFilm(QRandomGenerator *random, int pages)
{
    constexpr int BlocksPerPage = 10;
    TVLScreenplay film;
    auto &paragraphs = film.mParagraphs;
    paragraphs.push_back(plain(Kind::TitlePage, u"Title: The Long Rain"_s));
    paragraphs.push_back(plain(Kind::TitlePage, u"Author: Nobody"_s));
    int scene = 0;
    for (int block = 0; block < pages * BlocksPerPage; ++block) {
        if (block % (2 * BlocksPerPage) == 0) {
            paragraphs.push_back(plain(Kind::SceneHeading, u"INT. HOUSE - NIGHT"_s));
            paragraphs.back().mSceneNumber = QString::number(++scene);
        }
        if (oneIn(random, 2)) {
            paragraphs.push_back(plain(Kind::Action, words(random, 25) + u'.'));
        } else {
            addSpeech(random, &film, false);
            if (oneIn(random, 10))
                addSpeech(random, &film, true);
        }
        if (oneIn(random, 40))
            paragraphs.push_back(plain(Kind::Transition, u"SMASH CUT TO:"_s));
    }
    return film;
}
