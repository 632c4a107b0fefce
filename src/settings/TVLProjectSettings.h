#pragma once

#include "TVLLayoutSettings.h"

/** The state of a project's user interface: its layout in use and what is the project's own. */
class TVL_EXPORT TVLProjectSettings : public TVLLayoutSettings
{
    Q_OBJECT

public:
    explicit TVLProjectSettings(const QString &path, QObject *parent = nullptr);
    ~TVLProjectSettings() override;
    Q_DISABLE_COPY_MOVE(TVLProjectSettings)

    using TVLLayoutSettings::defaultValue;
    [[nodiscard]] bool defaultValue(FlagSetting setting) const override;
    [[nodiscard]] int defaultValue(IntSetting setting) const override;
    [[nodiscard]] QString defaultValue(StringSetting setting) const override;
    [[nodiscard]] QList<int> defaultValue(IntListSetting setting) const override;

    using TVLLayoutSettings::keyText;
    [[nodiscard]] QString keyText(FlagSetting setting) const override;
    [[nodiscard]] QString keyText(IntSetting setting) const override;
    [[nodiscard]] QString keyText(StringSetting setting) const override;
    [[nodiscard]] QString keyText(StringListSetting setting) const override;
    [[nodiscard]] QString keyText(IntListSetting setting) const override;
    [[nodiscard]] QString keyText(ByteArraySetting setting) const override;

    /** Words that the spelling check of this project passes over. */
    [[nodiscard]] QStringList ignoreList() const;
    void setIgnoreList(const QStringList &words);

    /** @name Where the user has been, in the form of the application's views @{ */
    [[nodiscard]] QByteArray firstEditorHistory() const;
    void setFirstEditorHistory(const QByteArray &history);
    [[nodiscard]] QByteArray secondEditorHistory() const;
    void setSecondEditorHistory(const QByteArray &history);
    [[nodiscard]] QByteArray binderHistory() const;
    void setBinderHistory(const QByteArray &history);
    [[nodiscard]] QByteArray fullScreenHistory() const;
    void setFullScreenHistory(const QByteArray &history);
    /** @} */
};
