#include "OutlineItems.h"

#include "TVLProjectModel.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

QString itemsText(const TVLProjectModel *model, const QModelIndex &parent)
{
    QStringList items;
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        QString item = model->title(index, true);
        const QStringList texts = {model->documentPlainText(index, true), model->synopsis(index),
                                   model->documentNoteAsPlainText(index)};
        if (!texts.join(QString()).isEmpty())
            item += u'{' + texts.join(u'|') + u'}';
        if (model->rowCount(index) > 0)
            item += u'(' + itemsText(model, index) + u')';
        items.append(item);
    }
    return items.join(u", "_s);
}

QByteArray opml(const QByteArray &body, const QByteArray &head)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<opml version=\"2.0\">" + head + "<body>"
        + body + "</body></opml>\n";
}

QString outlineFile(const QByteArray &content)
{
    static const QTemporaryDir directory;
    QFile file(directory.filePath(u"outline"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("the outline could not be written");
    return file.fileName();
}
