#include "RandomScreenplay.h"

#include <QRandomGenerator>
#include <QStringList>

#include <algorithm>

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
        u"*"_qs,       u"_"_qs,
        u"["_qs,       u"]"_qs,
        u"/"_qs,       u"\\"_qs,
        u"#"_qs,       u"@"_qs,
        u"!"_qs,       u"."_qs,
        u">"_qs,       u"<"_qs,
        u"~"_qs,       u"="_qs,
        u"^"_qs,       u":"_qs,
        u"("_qs,       u")"_qs,
        u" "_qs,       u"  "_qs,
        u"\t"_qs,      u"&"_qs,
        u"a"_qs,       u"B"_qs,
        u"1"_qs,       QString(LineEnd),
        u"**"_qs,      u"/*"_qs,
        u"*/"_qs,      u"[["_qs,
        u"]]"_qs,      u"INT. "_qs,
        u"TO:"_qs,     u"==="_qs,
        u"\u00e9"_qs,  u"\U0001F3AC"_qs,
        u"Title: "_qs, u"/*:element Shot*/"_qs,
        u"#1#"_qs,
    };
    static const QStringList likely = {
        u"rain "_qs,  u"the door "_qs, u"STEEL "_qs,     u"EXT. ROAD - DAY "_qs,
        u"(beat)"_qs, u"CUT TO:"_qs,   u"she said, "_qs, u"d\u00e9j\u00e0 vu "_qs,
        u"5 * 3 "_qs, u"[sic] "_qs,    u"and/or "_qs,    u"#7 "_qs,
        u"Act: "_qs,  u"... "_qs,      u"well "_qs,      u"NO "_qs,
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
        paragraph->mSceneNumber = oneIn(random, 4) ? u"1 #;/*"_qs : u"12-A.1"_qs;
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
        paragraph.mType = oneIn(random, 2) ? u"Cast List"_qs : u"a;b*/%[["_qs;
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
        u"rain"_qs,  u"over"_qs, u"the"_qs,   u"city"_qs, u"a"_qs,     u"door"_qs,
        u"opens"_qs, u"slow"_qs, u"and"_qs,   u"he"_qs,   u"waits"_qs, u"nothing"_qs,
        u"light"_qs, u"her"_qs,  u"hands"_qs, u"turn"_qs, u"away"_qs,  u"caf\u00e9"_qs,
    };
    QString text;
    for (int i = 0; i < count; ++i)
        text += (i > 0 ? u" "_qs : QString()) + some.at(random->bounded(int(some.size())));
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
    static const QStringList names = {u"STEEL"_qs, u"MARA (V.O.)"_qs, u"McADAMS"_qs, u"R2"_qs};
    auto &paragraphs = film->mParagraphs;
    paragraphs.push_back(plain(Kind::Character, names.at(random->bounded(int(names.size())))));
    paragraphs.back().mIsDual = isDual;
    if (oneIn(random, 3))
        paragraphs.push_back(plain(Kind::Parenthetical, u"(beat)"_qs));
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
        text += oneIn(random, 3) ? u"\n"_qs
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
    paragraphs.push_back(plain(Kind::TitlePage, u"Title: The Long Rain"_qs));
    paragraphs.push_back(plain(Kind::TitlePage, u"Author: Nobody"_qs));
    int scene = 0;
    for (int block = 0; block < pages * BlocksPerPage; ++block) {
        if (block % (2 * BlocksPerPage) == 0) {
            paragraphs.push_back(plain(Kind::SceneHeading, u"INT. HOUSE - NIGHT"_qs));
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
            paragraphs.push_back(plain(Kind::Transition, u"SMASH CUT TO:"_qs));
    }
    return film;
}
