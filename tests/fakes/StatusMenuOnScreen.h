#pragma once

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <QStringList>

#include <gtest/gtest.h>

namespace quorvane {

/// The status item's menu, as its user reads it.
class StatusMenuOnScreen {
public:
    explicit StatusMenuOnScreen(QMenu& menu)
        : m_menu(menu) {}

    /// Of all entries from top to bottom; "-" for a separator.
    QStringList titles() const { return titlesWhere(&always); }
    QStringList usable() const {
        return titlesWhere([](const QAction& action) { return action.isEnabled() && !action.isSeparator(); });
    }
    QStringList ticked() const {
        return titlesWhere([](const QAction& action) { return action.isChecked(); });
    }
    bool hasSymbol(const QString& title) const { return entry(title) != nullptr && !entry(title)->icon().isNull(); }
    QImage symbol(const QString& title) const { return entry(title)->icon().pixmap(32, 32).toImage(); }
    /// By the menu, as a click does.
    void choose(const QString& title) const {
        QAction* const action = entry(title);
        ASSERT_NE(action, nullptr) << "the menu has no " << title.toStdString();
        ASSERT_TRUE(action->isEnabled()) << title.toStdString();
        action->trigger();
    }

private:
    static bool always(const QAction&) { return true; }
    /// Without the marks of shortcuts.
    static QString titleOf(const QAction& action) {
        if (action.isSeparator()) {
            return QStringLiteral("-");
        }
        QString title = action.text();
        title.replace(QStringLiteral("&&"), QStringLiteral("\n")).remove(u'&');
        return title.replace(u'\n', u'&');
    }
    QAction* entry(const QString& title) const {
        for (QAction* const action : m_menu.actions()) {
            if (titleOf(*action) == title) {
                return action;
            }
        }
        return nullptr;
    }
    template <typename Condition>
    QStringList titlesWhere(Condition condition) const {
        QStringList titles;
        for (const QAction* const action : m_menu.actions()) {
            if (condition(*action)) {
                titles.append(titleOf(*action));
            }
        }
        return titles;
    }

    QMenu& m_menu;
};

} // namespace quorvane
