#include "bookmarks/Form3.h"

#include "app/AppContext.h"
#include "app/Controls.h"

#include <QListWidget>
#include <QVBoxLayout>

Form3::Form3(AppContext &context) : QWidget(nullptr), WindowTwips(this), ctx(context)
{
    setObjectName(QStringLiteral("Form3"));
    setWindowFlag(Qt::Tool, true);
    auto *layout = new QVBoxLayout(this);
    List1 = new QListWidget(this);
    List1->setObjectName(QStringLiteral("List1"));
    List2 = new QListWidget(this);
    List2->setObjectName(QStringLiteral("List2"));
    List2->hide();
    layout->addWidget(List1);
    resize(Twips::toPixels(5220), Twips::toPixels(2400));
}

Form3::~Form3() = default;

