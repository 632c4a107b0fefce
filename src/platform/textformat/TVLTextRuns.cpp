#include "TVLTextRuns_p.h"

#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class RunCollector
{
public:
    RunCollector(const QTextDocument *document, const TVLMarkOf &markOf, TVLRunEnd runEnd)
        : mDocument(document)
        , mMarkOf(markOf)
        , mRunEnd(runEnd)
    {
    }

    void add(const QTextFragment &fragment)
    {
        const QTextCharFormat format = fragment.charFormat();
        const QString mark = mMarkOf(format);
        if (mark.isEmpty())
            return;
        const int end = fragment.position() + fragment.length();
        if (goesOn(mark, fragment.position())) {
            mRuns.back().mEnd = end;
            mRuns.back().mLastFormat = format;
        } else {
            mRuns.push_back({fragment.position(), end, mark, format, format});
        }
    }

    std::vector<TVLMarkedRun> takeRuns() { return std::move(mRuns); }

private:
    [[nodiscard]] bool goesOn(const QString &mark, int position) const
    {
        if (mRuns.empty() || mRuns.back().mMark != mark)
            return false;
        const int end = mRuns.back().mEnd;
        return position == end
            || (mRunEnd == TVLRunEnd::AtOtherText && tvlAreParagraphEnds(mDocument, end, position));
    }

    const QTextDocument *mDocument;
    const TVLMarkOf &mMarkOf;
    TVLRunEnd mRunEnd;
    std::vector<TVLMarkedRun> mRuns;
};

} // namespace

std::vector<TVLMarkedRun> tvlMarkedRuns(const QTextDocument *document, int from, int to,
                                        const TVLMarkOf &markOf, TVLRunEnd runEnd)
{
    RunCollector collector(document, markOf, runEnd);
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it)
            collector.add(it.fragment());
    }
    return collector.takeRuns();
}

std::vector<TVLMarkedRun> tvlMarkedRuns(const QTextDocument *document, const TVLMarkOf &markOf,
                                        TVLRunEnd runEnd)
{
    return tvlMarkedRuns(document, 0, tvlEndOf(document), markOf, runEnd);
}

QString tvlCommentMark(const QTextFormat &format)
{
    return TVLTextFormat::hasComment(format) ? format.stringProperty(TVLTextFormat::CommentIdentity)
                                             : QString();
}

TVLMarkOf tvlMarkOfFlag(int property)
{
    return [property](const QTextFormat &format) {
        return format.boolProperty(property) ? u"+"_s : QString();
    };
}

void tvlVisitFragments(const QTextDocument *document, int from, int to,
                       const std::function<bool(const QTextFragment &)> &visit)
{
    if (from >= to)
        return;
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() < to;
         block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() >= to)
                return;
            if (fragment.position() + fragment.length() > from && !visit(fragment))
                return;
        }
    }
}

bool tvlHasFormat(const QTextDocument *document,
                  const std::function<bool(const QTextFormat &)> &isWanted)
{
    // Formats that no text has any more may be among those that a document knows, so these can
    // only tell that there is none.
    const QList<QTextFormat> known = document->allFormats();
    if (std::none_of(known.begin(), known.end(), isWanted))
        return false;
    bool isFound = false;
    tvlVisitFragments(document, 0, tvlEndOf(document), [&](const QTextFragment &fragment) {
        isFound = isWanted(fragment.charFormat());
        return !isFound;
    });
    return isFound;
}

void tvlChangeFormats(const QTextDocument *document, int from, int to,
                      const std::function<bool(QTextCharFormat *)> &change, TVLTextEdits *edits)
{
    for (QTextBlock block = document->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next()) {
        // It is the format of the character in front of the paragraph.
        const bool isInside = block.position() > from || block.position() == 0;
        QTextCharFormat endFormat = block.charFormat();
        if (isInside && tvlHasOwnEndFormat(block) && change(&endFormat))
            edits->setBlockCharFormat(block.position(), endFormat);
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int start = std::max(fragment.position(), from);
            const int end = std::min(fragment.position() + fragment.length(), to);
            QTextCharFormat format = fragment.charFormat();
            if (start < end && change(&format))
                edits->setCharFormat(start, end - start, format);
        }
    }
}

void tvlChangeFormats(QTextDocument *document, const std::function<bool(QTextCharFormat *)> &change)
{
    TVLTextEdits edits;
    tvlChangeFormats(document, 0, tvlEndOf(document), change, &edits);
    edits.apply(document);
}

bool tvlHasOwnEndFormat(const QTextBlock &block)
{
    return block.position() == 0
        || block.document()->characterAt(block.position() - 1) == QChar::ParagraphSeparator;
}

int tvlEndOf(const QTextDocument *document)
{
    return document->characterCount() - 1;
}

bool tvlAreParagraphEnds(const QTextDocument *document, int from, int to)
{
    for (int position = from; position < to; ++position) {
        if (document->characterAt(position) != QChar::ParagraphSeparator)
            return false;
    }
    return true;
}
