#include "icons.h"

#include <QApplication>
#include <QHash>
#include <QStyle>

namespace zelvo::desktop {

QIcon IconForKey(const std::string& key) {
    struct Picture {
        const char* theme;  // freedesktop icon name
        QStyle::StandardPixmap fallback;
    };
    static const QHash<QString, Picture> pictures = {
        {"User", {"avatar-default", QStyle::SP_FileIcon}},
        {"Import", {"document-import", QStyle::SP_DialogOpenButton}},
        {"Export", {"document-export", QStyle::SP_DialogSaveButton}},
        {"Delete", {"edit-delete", QStyle::SP_TrashIcon}},
        {"Delete2", {"edit-delete", QStyle::SP_TrashIcon}},
        {"Properties", {"document-properties", QStyle::SP_FileDialogDetailedView}},
        {"Pack", {"mail-message", QStyle::SP_FileDialogContentsView}},
        {"Refresh", {"view-refresh", QStyle::SP_BrowserReload}},
        {"Compress", {"package-x-generic", QStyle::SP_DriveHDIcon}},
        {"Help", {"help-contents", QStyle::SP_DialogHelpButton}},
        {"Exit", {"application-exit", QStyle::SP_DialogCloseButton}},
        {"OpenFold", {"folder-open", QStyle::SP_DirOpenIcon}},
        {"CloseFold", {"folder", QStyle::SP_DirClosedIcon}},
        {"Prj", {"folder-documents", QStyle::SP_DirIcon}},
        {"Archive", {"folder-tar", QStyle::SP_DirLinkIcon}},
        {"NoSort", {"view-list-text", QStyle::SP_FileDialogListView}},
        {"ShowAll", {"system-users", QStyle::SP_FileDialogDetailedView}},
        {"Add2", {"list-add", QStyle::SP_FileDialogNewFolder}},
    };
    static QHash<QString, QIcon> cache;
    QString name = QString::fromStdString(key);
    if (auto it = cache.find(name); it != cache.end()) return *it;
    QIcon icon;
    if (auto p = pictures.find(name); p != pictures.end()) {
        icon = QIcon::fromTheme(p->theme);
        if (icon.isNull() && qApp) icon = qApp->style()->standardIcon(p->fallback);
    }
    cache.insert(name, icon);
    return icon;
}

}  // namespace zelvo::desktop
