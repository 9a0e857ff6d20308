#include "resources/Resources.h"

#include <QDir>

void InitResources() {
    Q_INIT_RESOURCE(editor);
}
