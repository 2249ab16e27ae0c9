// FFmpeg's objects, each with its end.
#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/frame.h>
#include <libswscale/swscale.h>
}

#include <memory>

namespace vexel::tools {

struct AvDelete {
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
  void operator()(AVFormatContext* file) const {
    avio_closep(&file->pb);
    avformat_free_context(file);
  }
};

template <class T>
using Av = std::unique_ptr<T, AvDelete>;

}  // namespace vexel::tools
