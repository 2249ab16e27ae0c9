#include "export/film_encoder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "status.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace vexel::tools {

namespace {

// The film goes where standard output goes, opened anew so that a regular file
// can be read back.
constexpr char kOutput[] = "/proc/self/fd/1";

bool OutputIsFile() {
  struct stat info;
  return fstat(STDOUT_FILENO, &info) == 0 && S_ISREG(info.st_mode);
}

// For looking at the message without taking FFmpeg apart: an encoder that
// counts as missing.
bool IsHidden(const char* encoder) {
  const char* hidden = std::getenv("VEXEL_EXPORT_WITHOUT");
  return hidden && std::strcmp(hidden, encoder) == 0;
}

// Options that nobody took are a mistake in the table of kinds.
class Settings {
 public:
  explicit Settings(const std::vector<FilmSetting>& settings) {
    for (const FilmSetting& setting : settings)
      av_dict_set(&dictionary_, setting.name, setting.value, 0);
  }
  ~Settings() { av_dict_free(&dictionary_); }
  Settings(const Settings&) = delete;
  Settings& operator=(const Settings&) = delete;
  AVDictionary** get() { return &dictionary_; }
  int Result(int result) const {
    return result >= 0 && av_dict_count(dictionary_) > 0 ? AVERROR_OPTION_NOT_FOUND : result;
  }

 private:
  AVDictionary* dictionary_ = nullptr;
};

}  // namespace

FilmEncoder::FilmEncoder(const FilmKind& kind, const FilmForm& form)
    : kind_(kind), name_(form.name), packet_(av_packet_alloc()) {
  av_log_set_level(AV_LOG_QUIET);
  if (!packet_) Check(AVERROR(ENOMEM));
  OpenCoder(form);
  OpenFile();
}

void FilmEncoder::FailFor(const char* what, const char* name, const char* library,
                          unsigned version) const {
  const std::string package = library + std::to_string(version);
  throw Failure(kFailed, name_,
                std::string("FFmpeg here lacks the ") + what + " " + name + " (" + kind_.codec +
                    "); Debian has it in the package " + package);
}

void FilmEncoder::Check(int result) const {
  if (result >= 0) return;
  char why[AV_ERROR_MAX_STRING_SIZE] = "";
  av_strerror(result, why, sizeof why);
  throw Failure(kFailed, name_, std::string("cannot be written: ") + why);
}

void FilmEncoder::OpenCoder(const FilmForm& form) {
  const AVCodec* codec =
      IsHidden(kind_.encoder) ? nullptr : avcodec_find_encoder_by_name(kind_.encoder);
  if (!codec) FailFor("encoder", kind_.encoder, "libavcodec", LIBAVCODEC_VERSION_MAJOR);
  coder_.reset(avcodec_alloc_context3(codec));
  if (!coder_) Check(AVERROR(ENOMEM));
  coder_->width = form.width;
  coder_->height = form.height;
  coder_->pix_fmt = kind_.format;
  coder_->time_base = form.tick;
  coder_->framerate = {form.rate.num, form.rate.den};
  coder_->sample_aspect_ratio = {1, 1};
  coder_->thread_count = 0;  // as many as there are processors
  if (kind_.format == AV_PIX_FMT_YUV420P) {
    coder_->color_range = AVCOL_RANGE_MPEG;
    coder_->colorspace = AVCOL_SPC_BT709;
    coder_->color_primaries = AVCOL_PRI_BT709;
    coder_->color_trc = AVCOL_TRC_BT709;
  }
}

void FilmEncoder::OpenFile() {
  AVFormatContext* file = nullptr;
  avformat_alloc_output_context2(&file, nullptr, kind_.muxer, kOutput);
  if (!file) FailFor("container", kind_.muxer, "libavformat", LIBAVFORMAT_VERSION_MAJOR);
  file_.reset(file);
  if ((file->oformat->flags & AVFMT_GLOBALHEADER) != 0)
    coder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  Settings coderSettings(kind_.encoderSettings);
  Check(coderSettings.Result(avcodec_open2(coder_.get(), nullptr, coderSettings.get())));

  if (kind_.seeks && !OutputIsFile())
    throw Failure(kFailed, name_,
                  std::string("is no regular file, which .") + kind_.name + " needs");
  stream_ = avformat_new_stream(file, nullptr);
  if (!stream_) Check(AVERROR(ENOMEM));
  Check(avcodec_parameters_from_context(stream_->codecpar, coder_.get()));
  stream_->time_base = coder_->time_base;
  stream_->avg_frame_rate = coder_->framerate;
  Check(avio_open(&file->pb, kOutput, AVIO_FLAG_WRITE));
  Settings settings(kind_.muxerSettings);
  Check(settings.Result(avformat_write_header(file, settings.get())));
}

void FilmEncoder::Send(const AVFrame* frame) {
  Check(avcodec_send_frame(coder_.get(), frame));
  while (true) {
    const int result = avcodec_receive_packet(coder_.get(), packet_.get());
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) return;
    Check(result);
    packet_->duration = length_;
    packet_->stream_index = stream_->index;
    av_packet_rescale_ts(packet_.get(), coder_->time_base, stream_->time_base);
    Check(av_interleaved_write_frame(file_.get(), packet_.get()));
    Check(file_->pb->error);
  }
}

void FilmEncoder::Add(AVFrame* frame, int64_t start, int64_t length) {
  frame->pts = start;
  length_ = length;
  Send(frame);
}

void FilmEncoder::Finish() {
  Send(nullptr);
  // A frame of a GIF lasts until the next one; the last must be told.
  if (std::strcmp(kind_.muxer, "gif") == 0)
    Check(av_opt_set_int(file_->priv_data, "final_delay", length_, 0));
  Check(av_write_trailer(file_.get()));
  avio_flush(file_->pb);
  Check(file_->pb->error);
  Check(avio_closep(&file_->pb));
}

}  // namespace vexel::tools
