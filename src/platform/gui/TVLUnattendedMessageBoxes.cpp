#include "TVLUnattendedMessageBoxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QPushButton>

#include <utility>

namespace {

TVLUnattendedMessageBoxes *theOnlyOne = nullptr;

/** The button that unfolds the detailed text leaves the box open; Qt tells it by its text alone. */
bool isDetailsButton(const QMessageBox *box, QAbstractButton *button)
{
    return !box->detailedText().isEmpty() && box->buttonRole(button) == QMessageBox::ActionRole
        && (button->text() == QMessageBox::tr("Show Details...")
            || button->text() == QMessageBox::tr("Hide Details..."));
}

/** The buttons that close a box when they are pressed. */
QList<QAbstractButton *> closingButtons(const QMessageBox *box)
{
    QList<QAbstractButton *> buttons = box->buttons();
    buttons.removeIf([box](QAbstractButton *button) {
        return !button->isEnabled() || isDetailsButton(box, button);
    });
    return buttons;
}

QAbstractButton *onlyButtonWithRole(const QMessageBox *box, QMessageBox::ButtonRole role)
{
    QAbstractButton *found = nullptr;
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *button : buttons) {
        if (box->buttonRole(button) != role)
            continue;
        if (found)
            return nullptr;
        found = button;
    }
    return found;
}

/** The button that the Escape key presses; QMessageBox::escapeButton() knows it only if it was set.
 */
QAbstractButton *effectiveEscapeButton(const QMessageBox *box)
{
    if (QAbstractButton *button = box->escapeButton())
        return button;
    if (QAbstractButton *button = box->button(QMessageBox::Cancel))
        return button;
    if (QAbstractButton *button = onlyButtonWithRole(box, QMessageBox::RejectRole))
        return button;
    return onlyButtonWithRole(box, QMessageBox::NoRole);
}

} // namespace

TVLUnattendedMessageBoxes::TVLUnattendedMessageBoxes(QObject *parent)
    : QObject(parent)
{
    Q_ASSERT_X(qobject_cast<QApplication *>(QCoreApplication::instance()), Q_FUNC_INFO,
               "there must be a QApplication");
    Q_ASSERT_X(!theOnlyOne, Q_FUNC_INFO, "there is one already");
    theOnlyOne = this;
    QCoreApplication::instance()->installEventFilter(this);
}

TVLUnattendedMessageBoxes::~TVLUnattendedMessageBoxes()
{
    theOnlyOne = nullptr;
}

void TVLUnattendedMessageBoxes::setAnswer(QMessageBox::StandardButton button)
{
    mAnswer = button;
}

QList<TVLUnattendedMessageBoxes::Box> TVLUnattendedMessageBoxes::boxes() const
{
    return mBoxes;
}

QList<TVLUnattendedMessageBoxes::Box> TVLUnattendedMessageBoxes::takeBoxes()
{
    return std::exchange(mBoxes, {});
}

bool TVLUnattendedMessageBoxes::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        if (const QPointer<QMessageBox> box = qobject_cast<QMessageBox *>(watched)) {
            // Later, because a box adds its last buttons only now and isn't waiting for one yet.
            const auto answerIfShown = [this, box] {
                if (box && box->isVisible())
                    answer(box);
            };
            QMetaObject::invokeMethod(this, answerIfShown, Qt::QueuedConnection);
        }
    }
    return QObject::eventFilter(watched, event);
}

void TVLUnattendedMessageBoxes::answer(QMessageBox *box)
{
    const QPointer<QMessageBox> guardedBox(box);
    const QPointer<QAbstractButton> button(chooseButton(box));

    Box record;
    record.title = box->windowTitle();
    record.text = box->text();
    record.informativeText = box->informativeText();
    record.detailedText = box->detailedText();
    record.icon = box->icon();
    record.standardButtons = box->standardButtons();
    if (button) {
        record.button = box->standardButton(button);
        record.buttonText = button->text();
    }
    mBoxes += record;
    Q_EMIT answered(record);

    // A receiver may have closed the box.
    if (!guardedBox || !guardedBox->isVisible())
        return;
    if (button)
        button->click();
    else
        guardedBox->reject();
}

QAbstractButton *TVLUnattendedMessageBoxes::chooseButton(const QMessageBox *box) const
{
    const QList<QAbstractButton *> buttons = closingButtons(box);
    QAbstractButton *const wishes[] = {box->button(mAnswer), box->defaultButton(),
                                       effectiveEscapeButton(box)};
    for (QAbstractButton *wish : wishes) {
        if (buttons.contains(wish))
            return wish;
    }
    return buttons.value(0);
}
