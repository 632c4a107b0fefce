#pragma once

#include "TvlExport.h"

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QString>

/**
 * Answers message boxes while it lives, for programs that no person watches.
 *
 * Every QMessageBox that is shown, by exec(), open(), show() or one of the static functions, and
 * also from within another one, is recorded and then closed by pressing a button of it:
 *
 * - the one asked for by setAnswer(), if the box has it;
 * - else the box's default button;
 * - else its escape button, be it set or the one that the Escape key stands for;
 * - else its first button.
 *
 * Buttons that are disabled aren't pressed; a box without any other is rejected. The button is
 * pressed from the event loop, so that exec() runs by then. Other dialogs are left alone, and so
 * are boxes that were on screen before.
 *
 * Needs a QApplication. There can be only one object of this class at a time.
 */
class TVL_EXPORT TVLUnattendedMessageBoxes : public QObject
{
    Q_OBJECT

public:
    /** What a message box said and how it was answered. */
    struct Box
    {
        QString title;
        QString text;
        QString informativeText;
        QString detailedText;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QMessageBox::StandardButtons standardButtons = QMessageBox::NoButton;
        /** The button that was pressed; NoButton for one of the box's own making. */
        QMessageBox::StandardButton button = QMessageBox::NoButton;
        QString buttonText; ///< What stood on the button that was pressed; empty if none was.
    };

    explicit TVLUnattendedMessageBoxes(QObject *parent = nullptr);
    ~TVLUnattendedMessageBoxes() override;

    /** Presses this button in every box that has it, from now on; NoButton ends that. */
    void setAnswer(QMessageBox::StandardButton button);

    /** The boxes that were answered, in the order in which they were. */
    [[nodiscard]] QList<Box> boxes() const;

    /** Gives boxes() and forgets them. */
    [[nodiscard]] QList<Box> takeBoxes();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /** A box is about to be closed by pressing the button that is told in @p box. */
    void answered(const TVLUnattendedMessageBoxes::Box &box);

private:
    void answer(QMessageBox *box);
    [[nodiscard]] QAbstractButton *chooseButton(const QMessageBox *box) const;

    QList<Box> mBoxes;
    QMessageBox::StandardButton mAnswer = QMessageBox::NoButton;
};
