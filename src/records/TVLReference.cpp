#include "TVLReference.h"

#include <QDataStream>
#include <QIODevice>

namespace {

constexpr auto StreamVersion = QDataStream::Qt_6_0;

} // namespace

void TVLReference::setInternalLink(int id)
{
    mInternalLink = id;
    mUrl.clear();
}

void TVLReference::setUrl(const QUrl &url)
{
    mUrl = url;
    mInternalLink = -1;
}

bool TVLReference::contains(const TVLReference &reference, const QList<TVLReference> &references)
{
    return references.contains(reference);
}

QList<TVLReference> TVLReference::toReferenceList(const QByteArray &data)
{
    QDataStream stream(data);
    stream.setVersion(StreamVersion);
    QList<TVLReference> references;
    while (!stream.atEnd()) {
        TVLReference reference;
        qint32 link = -1;
        stream >> link >> reference.mUrl >> reference.mTitle;
        reference.mInternalLink = link;
        if (stream.status() != QDataStream::Ok)
            return {};
        references.append(reference);
    }
    return references;
}

QByteArray TVLReference::fromReferenceList(const QList<TVLReference> &references)
{
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream.setVersion(StreamVersion);
    for (const TVLReference &reference : references)
        stream << qint32(reference.mInternalLink) << reference.mUrl << reference.mTitle;
    return data;
}
