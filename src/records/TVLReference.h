#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

/** A reference of an item or of the project: to another item, or to an address outside. */
class TVL_EXPORT TVLReference
{
public:
    int mInternalLink = -1; ///< Id of the item referred to; -1 for an address.
    QUrl mUrl; ///< The address of an external reference.
    QString mTitle;

    [[nodiscard]] bool isInternal() const { return mInternalLink != -1; }

    /** Makes this a reference to an item; an address that it had is dropped. */
    void setInternalLink(int id);

    /** Makes this a reference to an address; the item that it led to is dropped. */
    void setUrl(const QUrl &url);

    /** Whether a reference with the same title, to the same item or address, is in a list. */
    [[nodiscard]] static bool contains(const TVLReference &reference,
                                       const QList<TVLReference> &references);

    /**
     * References as they are dragged from one place to another, in an order of bytes of our own.
     * Bytes that aren't whole give an empty list.
     */
    [[nodiscard]] static QList<TVLReference> toReferenceList(const QByteArray &data);
    [[nodiscard]] static QByteArray fromReferenceList(const QList<TVLReference> &references);

    friend bool operator==(const TVLReference &, const TVLReference &) = default;
    friend size_t qHash(const TVLReference &reference, size_t seed = 0)
    {
        return qHashMulti(seed, reference.mInternalLink, reference.mUrl, reference.mTitle);
    }
};
