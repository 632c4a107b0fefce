#include "ItemDocuments.h"

#include "TTextDoc.h"
#include "TVLProjectFolderFormat.h"
#include "TVLProjectNode.h"
#include "TVLTextDoc.h"
#include "TVLTextDocument.h"

using namespace Qt::StringLiterals;

std::unique_ptr<TVLTextDocument> readItemText(const QString &projectPath, TVLProjectNode *node,
                                              TVL::DocumentType type, QString *error)
{
    auto document = std::make_unique<TVLTextDocument>(nullptr, nullptr, node, type);
    document->setUndoRedoEnabled(false);
    if (node->mId < 0) {
        *error = u"'%1' has no id, and so no text that can be read"_s.arg(node->mTitle);
        return nullptr;
    }
    if (!TVLProjectFolderFormat::readDocument(projectPath, node, document.get(), error))
        return nullptr;
    return document;
}

QByteArray plainTextOf(const QTextDocument &document)
{
    QByteArray text = TTextDoc::toPlainText(&document).toUtf8();
    if (!document.isEmpty())
        text += '\n';
    return text;
}

TextLength &TextLength::operator+=(const TextLength &other)
{
    words += other.words;
    characters += other.characters;
    return *this;
}

TextLength lengthOf(const TVLTextDocument &document)
{
    return {TVLTextDoc::wordCount(&document, false, false), document.characterCount() - 1};
}
