#include "recorder/frmAudioRec.h"

#include "app/AppContext.h"
#include "app/Controls.h"
#include "recorder/RecorderText.h"
#include "recorder/WaveIn.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

namespace {

QRect twips(int left, int top, int width, int height)
{
    return QRect(Twips::toPixels(left), Twips::toPixels(top), Twips::toPixels(width), Twips::toPixels(height));
}

template<class W>
W *place(W *w, const char *name, QRect geometry)
{
    w->setObjectName(QLatin1String(name));
    w->setGeometry(geometry);
    return w;
}

} // namespace

frmAudioRec::frmAudioRec(AppContext &context)
    : QWidget(nullptr), ctx(context), m_waveIn(std::make_unique<WaveIn>(context.audioInput()))
{
    setObjectName(QStringLiteral("frmAudioRec"));
    setWindowFlag(Qt::Tool, true);
    setFixedSize(Twips::toPixels(5700), Twips::toPixels(3300));

    txtFile = place(new QLineEdit(this), "txtFile", twips(120, 120, 5460, 315));
    cmbChannels = place(new QComboBox(this), "cmbChannels", twips(120, 540, 1800, 315));
    cmbChannels->addItems({QStringLiteral("2 - stereo"), QStringLiteral("1 - mono")});
    cmbFrequency = place(new QComboBox(this), "cmbFrequency", twips(2040, 540, 1500, 315));
    cmbFrequency->addItems({QStringLiteral("48000"), QStringLiteral("44100"), QStringLiteral("22050"),
                            QStringLiteral("11025"), QStringLiteral("8000")});
    cmbBits = place(new QComboBox(this), "cmbBits", twips(3660, 540, 900, 315));
    cmbBits->addItems({QStringLiteral("16"), QStringLiteral("8")});
    btnStart = place(new QPushButton(this), "btnStart", twips(120, 960, 1500, 400));
    btnStop = place(new QPushButton(this), "btnStop", twips(1740, 960, 1500, 400));
    Image2 = place(new PictureBox(this), "Image2", twips(3360, 990, 345, 345));
    Image2->setStretch(true);
    lblState = place(new QLabel(this), "lblState", twips(3840, 1020, 1740, 315));

    Picture4 = place(new QWidget(this), "Picture4", twips(0, 1440, 5700, 1860));
    Label1 = place(new QLabel(Picture4), "Label1", twips(120, 60, 900, 255));
    Label2 = place(new QLabel(Picture4), "Label2", twips(120, 420, 900, 255));
    Picture1 = place(new QWidget(Picture4), "Picture1", twips(1080, 60, ScaleWidth, 615));
    Picture1->setStyleSheet(QStringLiteral("background: black;"));
    const auto meter = [this](const char *name, int top) {
        auto *bar = place(new QProgressBar(Picture1), name, twips(0, top, ScaleWidth, 255));
        bar->setRange(0, ScaleWidth);
        bar->setTextVisible(false);
        // A fixed gradient seen through a box of the bar's width.
        bar->setStyleSheet(QStringLiteral(
            "QProgressBar { border: none; background: black; }"
            "QProgressBar::chunk { background: qlineargradient(x1:0, y1:0, x2:1, y2:0,"
            " stop:0 #00c000, stop:0.7 #e0e000, stop:1 #e00000); }"));
        return bar;
    };
    picPeakLeft = meter("picPeakLeft", 0);
    picPeakRight = meter("picPeakRight", 360);
    lblTime = place(new QLabel(Picture4), "lblTime", twips(120, 900, 2400, 375));
    lblBytesWritten = place(new QLabel(Picture4), "lblBytesWritten", twips(2640, 900, 2940, 375));

    QObject::connect(btnStart, &QPushButton::clicked, this, [this] { btnStart_Click(); });
    QObject::connect(btnStop, &QPushButton::clicked, this, [this] { btnStop_Click(); });

    m_waveIn->message = [this](const QString &text, int style, const QString &title) {
        return ctx.msgBox(text, style, title);
    };
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    now = [clock] { return clock->elapsed(); };

    Timer = ctx.timers().createTimer();
    Timer->setInterval(0);
    Timer->onTimeout = [this] { Timer_Timer(); };
}

frmAudioRec::~frmAudioRec()
{
    if (m_loaded)
        Form_Unload();
}

void frmAudioRec::Form_Load()
{
    m_loaded = true;
    const LanguageTable &L = ctx.Lingua;

    // 1. Captions and the controls as a fresh window has them.
    setWindowTitle(L(104));
    btnStartTag.clear();
    btnStart->setText(QStringLiteral("&") + L(111));
    btnStop->setText(L(9));
    btnStop->setVisible(false);
    btnStop->setEnabled(false);
    Label1->setText(L(107));
    Label2->setText(L(106));
    cmbChannels->setCurrentIndex(0);
    cmbBits->setCurrentIndex(0);
    cmbFrequency->setCurrentIndex(1);
    for (QWidget *w : std::initializer_list<QWidget *>{cmbChannels, cmbFrequency, cmbBits, txtFile})
        w->setEnabled(true);
    Image2->LoadPicture(ctx.filesPath(QStringLiteral("rec.jpg")));
    Image2->setVisible(false);
    Picture4->setVisible(false);
    picPeakLeft->setValue(0);
    picPeakRight->setValue(0);
    setState(QString(), 0xFF0000, false);
    lblTime->setText(QStringLiteral("00:00:00"));
    lblBytesWritten->setText(QStringLiteral("0 ") + L(110));
    bCattura = false;
    bMisura = false;

    // Names for screen readers; the labels that change keep their text as
    // what is read, and the meters tell their level as a value.
    txtFile->setAccessibleName(TogliAmp(L(105)));
    cmbChannels->setAccessibleName(TogliAmp(L(108)));
    cmbFrequency->setAccessibleName(TogliAmp(L(109)));
    cmbBits->setAccessibleName(QStringLiteral("Bits"));
    picPeakLeft->setAccessibleName(TogliAmp(L(107)));
    picPeakRight->setAccessibleName(TogliAmp(L(106)));
    Image2->setAccessibleName(TogliAmp(L(113)));

    // 2.
    m_waveIn->AggancioCattura(true);

    // 3. A start as the window opens, for whoever sets the Tag.
    if (Tag == QLatin1String("1")) {
        const qint16 channels = cmbChannels->currentIndex() == 0 ? 2 : 1;
        m_waveIn->AvviaCattura(channels, qint16(cmbBits->currentText().toInt()),
                               cmbFrequency->currentText().toInt(), txtFile->text());
    }

    // 4.
    txtFile->setText(freeRecordingName(ctx.programFolder()));

    // The tick runs while the window is on screen or records; a recorder
    // loaded hidden only to read its file name costs nothing.
    if (isVisible() || m_waveIn->CattureInCorso)
        Timer->setInterval(1);
}

void frmAudioRec::Form_Unload()
{
    m_waveIn->AggancioCattura(false);
    m_waveIn->FermaCattura();
    Timer->setInterval(0);
    m_loaded = false;
}

void frmAudioRec::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_loaded && Timer->interval() == 0)
        Timer->setInterval(1);
}

void frmAudioRec::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    event->accept();
}

void frmAudioRec::ScegliFileWav()
{
    FileDlgArgs args;
    args.owner = this;
    args.title = ctx.Lingua(105);
    args.fileName = txtFile->text();
    args.defaultExtension = QStringLiteral("wav");
    args.filter = ctx.Lingua(123) + QChar(0) + QStringLiteral("*.wav");
    args.initialFolder = ctx.CartellaMedia;
    const QString path = ctx.FileDlg(args);
    txtFile->setText(path);
    if (!path.isEmpty() && QFileInfo::exists(path)) {
        ctx.CartellaMedia = ctx.currentDirectory;
        const QString text = TogliAmp(ctx.Lingua(53)) + u'\r' + u'\r' + TogliAmp(ctx.Lingua(54));
        if (ctx.msgBox(text, 52, TogliAmp(ctx.Lingua(1))) == MsgBox::No)
            txtFile->clear();
    }
}

void frmAudioRec::btnStart_Click()
{
    const LanguageTable &L = ctx.Lingua;
    if (btnStartTag.isEmpty()) {
        picPeakLeft->setValue(0);
        picPeakRight->setValue(0);
        btnStartTag = QStringLiteral("Start");
        btnStart->setText(L(8));
        ScegliFileWav();
        // Tag and caption stay as set: a later click is taken for a resume.
        if (txtFile->text().trimmed().isEmpty())
            return;
        EnableRecording();
        const qint16 channels = cmbChannels->currentIndex() == 0 ? 2 : 1;
        m_waveIn->AvviaCattura(channels, qint16(cmbBits->currentText().toInt()),
                               cmbFrequency->currentText().toInt(), txtFile->text());
        Image2->setVisible(true);
        btnStop->setVisible(true);
        Picture4->setVisible(true);
        return;
    }
    btnStartTag = QStringLiteral("Pause");
    bCattura = !bCattura;
    if (bCattura) {
        btnStart->setText(L(8));
        setState(L(113), 255, true);
        Image2->setVisible(true);
    } else {
        btnStart->setText(QStringLiteral("&") + L(112));
        setState(L(114), 32768, true);
        Image2->setVisible(false);
    }
    m_waveIn->PausaCattura();
}

void frmAudioRec::btnStop_Click()
{
    if (lblState->text() == ctx.Lingua(114)) {
        bCattura = !bCattura;
        m_waveIn->PausaCattura();
    }
    btnStartTag.clear();
    btnStart->setText(QStringLiteral("&") + ctx.Lingua(111));
    DisableRecording();
    m_waveIn->AggancioCattura(false);
    m_waveIn->FermaCattura();
    m_waveIn->AggancioCattura(true);
}

// While recording, only Stop acts; the format and the file are fixed.
void frmAudioRec::setRecordingControls(bool recording)
{
    bCattura = recording;
    bMisura = recording;
    btnStop->setEnabled(recording);
    for (QWidget *w : std::initializer_list<QWidget *>{cmbChannels, cmbFrequency, cmbBits, txtFile})
        w->setEnabled(!recording);
}

void frmAudioRec::EnableRecording()
{
    setRecordingControls(true);
    setState(ctx.Lingua(113), 255, true);
}

void frmAudioRec::DisableRecording()
{
    setRecordingControls(false);
    setState(QString(), 0xFF0000, false);
}

void frmAudioRec::setState(const QString &caption, int color, bool bold)
{
    lblState->setText(caption);
    lblStateForeColor = color;
    lblStateBold = bold;
    const QColor rgb(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
    lblState->setStyleSheet(QStringLiteral("color: %1; font-weight: %2;")
                                .arg(rgb.name(), bold ? QStringLiteral("bold") : QStringLiteral("normal")));
}

void frmAudioRec::setMeter(QProgressBar *meter, qint64 width)
{
    // A width below 0 is refused: the bar keeps its last one, so it does
    // not fall to nothing on silence.
    if (width >= 0)
        meter->setValue(int(std::min<qint64>(width, ScaleWidth)));
}

void frmAudioRec::stopAfterFailure(int entry)
{
    if (!btnStartTag.isEmpty())
        btnStop_Click();
    ctx.warn(entry);
}

void frmAudioRec::Timer_Timer()
{
    if (const int failure = m_waveIn->takeFailure())
        stopAfterFailure(failure);

    const double t = now() / 1000.0;
    if (bMisura) {
        int left = 0;
        int right = 0;
        m_waveIn->LeggiPicchi(left, right);
        const qint64 full = qint64(m_waveIn->ValoreMassimo());
        if (t - m_lastMeter >= 0.05 && full > 0) {
            setMeter(picPeakLeft, qint64(left) * ScaleWidth / full - 110);
            setMeter(picPeakRight, qint64(right) * ScaleWidth / full - 110);
            m_lastMeter = t;
        }
    }
    if (bCattura) {
        if (t - m_lastBlink >= 0.5) {
            if (lblState->text() == ctx.Lingua(113))
                setState(QString(), lblStateForeColor, lblStateBold);
            else
                setState(ctx.Lingua(113), lblStateForeColor, lblStateBold);
            m_lastBlink = t;
        }
        lblTime->setText(FormatTime(qint32(m_waveIn->SecondiRegistrati())));
    }
    lblBytesWritten->setText(QString::number(m_waveIn->ByteRegistrati()) + u' ' + ctx.Lingua(110));
}
