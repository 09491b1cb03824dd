// The sound of a media file for the waveform, through FFmpeg's libraries,
// which libmpv brings into the process anyway. A second mpv handle would
// decode at half the speed.

#include "platform/mpv/MpvMedia.h"

#include <QFile>
#include <memory>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

namespace {

struct FormatCloser
{
    void operator()(AVFormatContext *f) const { avformat_close_input(&f); }
};
struct CodecFreer
{
    void operator()(AVCodecContext *c) const { avcodec_free_context(&c); }
};
struct SwrFreer
{
    void operator()(SwrContext *s) const { swr_free(&s); }
};
struct FrameFreer
{
    void operator()(AVFrame *f) const { av_frame_free(&f); }
};
struct PacketFreer
{
    void operator()(AVPacket *p) const { av_packet_free(&p); }
};

class Converter
{
public:
    bool open(const AVCodecContext &codec)
    {
        m_channels = codec.ch_layout.nb_channels;
        if (m_channels <= 0)
            return false;
        // A stream with no channel order of its own (raw PCM in some
        // containers) gets the default order for its count.
        AVChannelLayout layout{};
        if (codec.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
            av_channel_layout_default(&layout, m_channels);
        else
            av_channel_layout_copy(&layout, &codec.ch_layout);
        SwrContext *swr = nullptr;
        const int made = swr_alloc_set_opts2(&swr, &layout, AV_SAMPLE_FMT_FLT, codec.sample_rate, &layout,
                                             codec.sample_fmt, codec.sample_rate, 0, nullptr);
        av_channel_layout_uninit(&layout);
        m_swr.reset(swr);
        return made >= 0 && swr_init(swr) >= 0;
    }

    void convert(const AVFrame &frame, DecodeTarget &target)
    {
        const int frames = frame.nb_samples;
        if (frames <= 0)
            return;
        m_buffer.resize(size_t(frames) * m_channels);
        auto *out = reinterpret_cast<uint8_t *>(m_buffer.data());
        const int got = swr_convert(m_swr.get(), &out, frames, const_cast<const uint8_t **>(frame.extended_data), frames);
        if (got > 0)
            target.samples(m_buffer.data(), got, m_channels);
    }

private:
    std::unique_ptr<SwrContext, SwrFreer> m_swr;
    std::vector<float> m_buffer;
    int m_channels = 0;
};

} // namespace

DecodeResult decodeAudio(const QString &path, DecodeTarget &target)
{
    AVFormatContext *rawFormat = nullptr;
    if (avformat_open_input(&rawFormat, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
        return DecodeResult::Unreadable;
    std::unique_ptr<AVFormatContext, FormatCloser> format(rawFormat);
    if (avformat_find_stream_info(format.get(), nullptr) < 0)
        return DecodeResult::Unreadable;

    MediaFacts facts;
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        const AVStream *stream = format->streams[i];
        // A cover picture in an MP3 is not a picture to watch.
        if (stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !(stream->disposition & AV_DISPOSITION_ATTACHED_PIC))
            facts.hasVideo = true;
    }
    if (format->duration > 0)
        facts.seconds = double(format->duration) / AV_TIME_BASE;

    const AVCodec *decoder = nullptr;
    const int index = av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (index < 0 || !decoder) {
        target.opened(facts);
        return DecodeResult::NoAudio;
    }
    std::unique_ptr<AVCodecContext, CodecFreer> codec(avcodec_alloc_context3(decoder));
    if (!codec || avcodec_parameters_to_context(codec.get(), format->streams[index]->codecpar) < 0
        || avcodec_open2(codec.get(), decoder, nullptr) < 0)
        return DecodeResult::Unreadable;
    Converter converter;
    if (!converter.open(*codec))
        return DecodeResult::Unreadable;
    // The other streams are not even demuxed into packets.
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        if (int(i) != index)
            format->streams[i]->discard = AVDISCARD_ALL;
    }
    facts.hasAudio = true;
    facts.sampleRate = codec->sample_rate;
    target.opened(facts);

    std::unique_ptr<AVPacket, PacketFreer> packet(av_packet_alloc());
    std::unique_ptr<AVFrame, FrameFreer> frame(av_frame_alloc());
    const auto drain = [&] {
        while (avcodec_receive_frame(codec.get(), frame.get()) >= 0) {
            converter.convert(*frame, target);
            av_frame_unref(frame.get());
        }
    };
    // A broken packet is skipped; the rest of the file still counts.
    while (av_read_frame(format.get(), packet.get()) >= 0) {
        if (packet->stream_index == index && avcodec_send_packet(codec.get(), packet.get()) >= 0)
            drain();
        av_packet_unref(packet.get());
        if (target.cancelled())
            return DecodeResult::Cancelled;
    }
    avcodec_send_packet(codec.get(), nullptr);
    drain();
    return DecodeResult::Done;
}
