// decode_film FILM [RAW]: prints `stream WIDTH HEIGHT FORMAT RATE`, then for each frame
// `frame START` with the start as a fraction of seconds in lowest terms; RAW gets the
// frames as 8-bit red, green, blue.
#include <cstdio>
#include <vector>

#include "export/av.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vexel::tools {

namespace {

struct InputDelete {
  void operator()(AVFormatContext* file) const { avformat_close_input(&file); }
};

class Decoder {
 public:
  bool Open(const char* path) {
    AVFormatContext* file = nullptr;
    if (avformat_open_input(&file, path, nullptr, nullptr) < 0) return false;
    file_.reset(file);
    if (avformat_find_stream_info(file, nullptr) < 0 || file->nb_streams != 1) return false;
    stream_ = file->streams[0];
    const AVCodec* codec = avcodec_find_decoder(stream_->codecpar->codec_id);
    coder_.reset(avcodec_alloc_context3(codec));
    if (!coder_ || avcodec_parameters_to_context(coder_.get(), stream_->codecpar) < 0) return false;
    coder_->pkt_timebase = stream_->time_base;
    return avcodec_open2(coder_.get(), codec, nullptr) >= 0;
  }

  bool Run(std::FILE* raw) {
    std::printf("stream %d %d %s %d/%d\n", coder_->width, coder_->height,
                av_get_pix_fmt_name(coder_->pix_fmt), stream_->avg_frame_rate.num,
                stream_->avg_frame_rate.den);
    while (av_read_frame(file_.get(), packet_.get()) >= 0) {
      const bool sent = avcodec_send_packet(coder_.get(), packet_.get()) >= 0;
      av_packet_unref(packet_.get());
      if (!sent || !TakeFrames(raw)) return false;
    }
    return avcodec_send_packet(coder_.get(), nullptr) >= 0 && TakeFrames(raw);
  }

 private:
  bool TakeFrames(std::FILE* raw) {
    while (true) {
      const int result = avcodec_receive_frame(coder_.get(), frame_.get());
      if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return true;
      if (result < 0) return false;
      int num = 0;
      int den = 1;
      av_reduce(&num, &den, frame_->pts * stream_->time_base.num, stream_->time_base.den,
                INT32_MAX);
      std::printf("frame %d/%d\n", num, den);
      if (raw && !Write(raw)) return false;
    }
  }

  bool Write(std::FILE* raw) {
    const int width = frame_->width;
    const int height = frame_->height;
    scaler_.reset(sws_getContext(width, height, static_cast<AVPixelFormat>(frame_->format), width,
                                 height, AV_PIX_FMT_RGB24, SWS_BICUBIC | SWS_ACCURATE_RND, nullptr,
                                 nullptr, nullptr));
    if (!scaler_) return false;
    if (frame_->format == AV_PIX_FMT_YUV420P) {
      const int* table = sws_getCoefficients(SWS_CS_ITU709);
      sws_setColorspaceDetails(scaler_.get(), table, 0, table, 1, 0, 1 << 16, 1 << 16);
    }
    // Rows with room behind them, which the scaler may write into.
    const int rowBytes = 3 * width;
    const int step = rowBytes + 64;
    std::vector<uint8_t> rows(static_cast<size_t>(step) * static_cast<size_t>(height));
    uint8_t* const planes[4] = {rows.data(), nullptr, nullptr, nullptr};
    const int steps[4] = {step, 0, 0, 0};
    sws_scale(scaler_.get(), frame_->data, frame_->linesize, 0, height, planes, steps);
    for (int y = 0; y < height; y++)
      std::fwrite(&rows[static_cast<size_t>(y * step)], 1, static_cast<size_t>(rowBytes), raw);
    return true;
  }

  std::unique_ptr<AVFormatContext, InputDelete> file_;
  AVStream* stream_ = nullptr;  // the file's
  Av<AVCodecContext> coder_;
  Av<AVPacket> packet_{av_packet_alloc()};
  Av<AVFrame> frame_{av_frame_alloc()};
  Av<SwsContext> scaler_;
};

}  // namespace

}  // namespace vexel::tools

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  av_log_set_level(AV_LOG_ERROR);
  vexel::tools::Decoder decoder;
  if (!decoder.Open(argv[1])) return 1;
  std::FILE* raw = argc > 2 ? std::fopen(argv[2], "wb") : nullptr;
  const bool done = decoder.Run(raw);
  if (raw && std::fclose(raw) != 0) return 1;
  return done ? 0 : 1;
}
