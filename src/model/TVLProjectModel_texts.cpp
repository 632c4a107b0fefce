#include "TVLProjectModel_p.h"

#include "TTextDoc.h"
#include "TVLHeldDocument_p.h"
#include "TVLProjectNode.h"

#include <QRegExp>
#include <QTextBlock>

using namespace Qt::StringLiterals;

namespace {

// A text that is no longer than this serves as a title itself.
constexpr int LongestTitleBlock = 50;
// Each word of a title counts with the blank behind it.
constexpr int TitleLimit = 51;
constexpr int SynopsisWords = 20;

/** The words of the first block that has any. */
QStringList firstWords(const QTextDocument *document)
{
    const QRegExp blanks(u"\\s+"_s);
    for (QTextBlock block = document->firstBlock(); block.isValid(); block = block.next()) {
        const QStringList words = blanks.splitString(block.text(), Qt::SkipEmptyParts);
        if (!words.isEmpty())
            return words;
    }
    return {};
}

bool canBeTitle(const QTextDocument *document)
{
    const QTextBlock block = document->firstBlock();
    return !block.next().isValid() && !block.text().contains(QChar::LineSeparator)
        && block.length() <= LongestTitleBlock;
}

/** How many words from the front fit in a title. */
qsizetype titleWordCount(const QStringList &words)
{
    qsizetype length = 0;
    for (qsizetype i = 0; i < words.size(); ++i) {
        length += words.at(i).size() + 1;
        if (length >= TitleLimit)
            return i;
    }
    return words.size();
}

} // namespace

QString TVLProjectModel::calcTitleFromText(const QTextDocument *document, bool force, bool ellipsis)
{
    if (!document || (!force && canBeTitle(document)))
        return {};
    const QStringList words = firstWords(document);
    const qsizetype count = titleWordCount(words);
    if (count == 0)
        return {};
    QString title = words.first(count).join(u' ');
    if (ellipsis && count < words.size())
        title += u"...";
    return TTextDoc::toPlainText(title.trimmed());
}

QString TVLProjectModel::calcTitleFromText(const QModelIndex &index) const
{
    const TVLHeldDocument text(this, index, TVL::MainText);
    return calcTitleFromText(text.get(), true, false);
}

QString TVLProjectModel::autoGenerateSynopsisText(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    const TVLHeldDocument text(this, index, TVL::MainText);
    return text ? firstWords(text.get()).mid(0, SynopsisWords).join(u' ') : QString();
}

QList<QModelIndex> TVLProjectModel::searchInSynopsis(const QString &text, bool regExp) const
{
    const QRegExp expression(text, Qt::CaseSensitive);
    QList<QModelIndex> found;
    tvlForEachNode(d->mRootNode.get(), [&](const TVLProjectNode *node) {
        if (node->mNodeType < TVL::Folder || !node->mSynopsisDocument)
            return;
        const QString synopsis = node->mSynopsisDocument->toPlainText();
        if (regExp ? expression.indexIn(synopsis) >= 0 : synopsis.contains(text))
            found.append(createIndex(node));
    });
    return found;
}
