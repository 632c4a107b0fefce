#pragma once

#include "ItemDocuments.h"

#include "TVLBinderKeyword.h"
#include "TVLCollectionMetaData.h"
#include "TVLLabel.h"
#include "TVLMetaDataField.h"
#include "TVLProjectInfo.h"
#include "TVLReference.h"
#include "TVLStatusItem.h"
#include "TVLTargets.h"

#include <QList>
#include <QPair>
#include <QString>

#include <array>

class QJsonObject;
class TVLProjectModel;

/** The texts of a project taken together. */
struct TextCounts
{
    TextLength all;
    TextLength draft; ///< Of what lies in the Draft folder.
    int unreadable = 0; ///< Texts that can't be read and so aren't counted.
};

/** A keyword and its use. */
struct KeywordUse
{
    TVLBinderKeyword keyword;
    int depth = 0; ///< 0 at the top level.
    int items = 0; ///< How many items have it.
};

/** A field of custom meta-data and its use. */
struct FieldUse
{
    TVLMetaDataField field;
    int items = 0; ///< How many items have something in it.
};

/** Something that is told by its id and its title. */
struct TitledId
{
    int id = -1;
    QString title;
};

/** Who has a project open. */
struct LockDescription
{
    int state = 0; ///< A TVLProjectFolderFormat::LockState.
    QString host;
    QString user;
    QString program;
};

/** What a project is made of. */
struct ProjectDescription
{
    static constexpr int TypeCount = TVL::Other + 1;

    QString name;
    QString path;
    int formatVersion = 0;
    TVLProjectInfo info;

    int items = 0;
    std::array<int, TypeCount> typeCounts{}; ///< By TVL::NodeType.
    TextCounts texts;

    QString labelTitle; ///< What the project calls a label.
    int defaultLabelId = -1;
    QList<TVLLabel> labels;
    QString statusTitle; ///< What the project calls a status.
    int defaultStatusId = -1;
    QList<TVLStatusItem> statusItems;
    QList<KeywordUse> keywords; ///< Each behind the one that it is part of.
    QList<FieldUse> fields;

    QList<TVLCollectionMetaData> collections;
    QList<TitledId> favorites;
    QList<TVLReference> references;
    QList<TitledId> notes;
    qsizetype completions = 0; ///< Words of the completion list.

    QList<QPair<QString, QString>> properties; ///< The binder's word and the value, if any.
    TVLDraftTarget draftTarget;
    TVLSessionTarget sessionTarget;
    bool notifiesTargets = false;
    bool isInBackups = true;
    LockDescription lock;
};

/** Describes a project. All items are walked over once, and their texts are read. */
[[nodiscard]] ProjectDescription describe(const TVLProjectModel &model);

/** A description with stable keys. */
[[nodiscard]] QJsonObject toJson(const ProjectDescription &project);

/** A description for people: what is told, and what is told of it. */
[[nodiscard]] QList<QPair<QString, QString>> toLines(const ProjectDescription &project);

/** The name of a colour as `#rrggbb`; empty for none. */
[[nodiscard]] QString colorName(const QColor &color);

/** What a target counts, in the binder's word. */
[[nodiscard]] QString countTypeWord(int type);
