#include "bookmarks/Form3.h"

#include "app/AppContext.h"
#include "app/Controls.h"

#include <QListWidget>
#include <QVBoxLayout>

Form3::Form3(AppContext &context) : QWidget(nullptr), ctx(context)
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

int Form3::Left() const { return Twips::fromPixels(x()); }
int Form3::Top() const { return Twips::fromPixels(y()); }
int Form3::Width() const { return Twips::fromPixels(frameGeometry().width()); }
int Form3::Height() const { return Twips::fromPixels(frameGeometry().height()); }
void Form3::setLeft(int twips) { move(Twips::toPixels(twips), y()); }
void Form3::setTop(int twips) { move(x(), Twips::toPixels(twips)); }
void Form3::setWidth(int twips) { resize(Twips::toPixels(twips), height()); }
void Form3::setHeight(int twips) { resize(width(), Twips::toPixels(twips)); }
