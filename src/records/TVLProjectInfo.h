#pragma once

#include "TVL.h"

#include <QDateTime>
#include <QString>
#include <QUuid>

/** What the root element of a binder says of the project and of its last save. */
struct TVLProjectInfo
{
    TVL::BinderVersion mBinderVersion = TVL::NoBinderVersion;
    QString mVersion; ///< The version text as it stands.
    QString mDevice; ///< Name of the device that saved.
    QString mCreator; ///< Not filled by the reader; the writer says who it is itself.
    QString mCreatorVersion; ///< Not filled by the reader either.
    QDateTime mModified; ///< When it was saved.
    QUuid mModId; ///< Identity of the save, on the desktop side.
    QUuid mSyncId; ///< Identity of the sync, on the mobile side.
    QUuid mChecksumsId; ///< Identity of the mobile side's checksums.
    bool mIsTemplate = false;
    bool mIsNewProject = false; ///< Newly made on the mobile side.

    friend bool operator==(const TVLProjectInfo &, const TVLProjectInfo &) = default;
};
