#pragma once

#include "TVLScreenplay_p.h"

#include <QByteArray>
#include <QXmlStreamWriter>

/** Composes a file of Final Draft. */
class TVLFinalDraftComposer
{
public:
    explicit TVLFinalDraftComposer(const TVLScreenplay &screenplay);

    [[nodiscard]] QByteArray compose();

private:
    void composeBody(size_t start);
    /** Two speeches at the same time, if they begin at a place; the place behind them. */
    [[nodiscard]] size_t composeDual(size_t place);
    [[nodiscard]] size_t endOfSpeech(size_t place) const;
    void composeTitlePage(size_t end);
    void composeParagraph(const TVLScreenplayParagraph &paragraph);
    void composeEntry(const TVLScreenplayParagraph &paragraph);
    void composeAttributes(const TVLScreenplayParagraph &paragraph);
    void composeRuns(const TVLScreenplayParagraph &paragraph, int from);
    void composeNotes(const TVLScreenplayParagraph &paragraph, int from);
    void composeComments(const TVLScreenplayParagraph &paragraph, int from);
    void beginNote(QStringView name, int start, int end);
    void composeText(QStringView text, quint8 styles, int look);

    const TVLScreenplay &mScreenplay;
    QByteArray mBytes;
    QXmlStreamWriter mXml;
};
