// A small RTSP server for tests and benchmarks, with made-up pictures. Listens on 127.0.0.1, prints
// "PORT n" and "READY", and dies with its parent.
//
//   rtspserver [--port N] [--user NAME --password TEXT [--digest]] [--udp-only]
//
// Streams: /h264 /h265 /mjpeg (640 x 480), /hd /hd-h265 /hd-mjpeg (1920 x 1080; /hd is H.264), all
// of a bouncing ball. Below /bars the same in colour bars, below /blink in one colour all over that
// is another in each frame, below /clock with the ball and the time as ClockCode.h tells.

#include "ClockCode.h"

#include <gst/rtsp-server/rtsp-server.h>
#include <gst/video/video.h>

#include <sys/prctl.h>

#include <csignal>
#include <cstdio>
#include <string>

namespace {

struct Arguments
{
    std::string port = "0";
    std::string user;
    std::string password;
    bool digest = false;
    bool udpOnly = false;
};

bool parse(int argc, char** argv, Arguments* arguments)
{
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--digest")
            arguments->digest = true;
        else if (name == "--udp-only")
            arguments->udpOnly = true;
        else if (i + 1 == argc)
            return false;
        else if (name == "--port")
            arguments->port = argv[++i];
        else if (name == "--user")
            arguments->user = argv[++i];
        else if (name == "--password")
            arguments->password = argv[++i];
        else
            return false;
    }
    return true;
}

/// What a stream shows, with the first part of its path.
struct Scene
{
    const char* path;
    const char* source; ///< Properties of videotestsrc.
    bool clock;
};

struct Coding
{
    const char* path;
    const char* format; ///< JPEG knows one colour space only.
    const char* encoder;
    int width;
    int height;
};

const Scene scenes[] = {
    {"", "pattern=ball", false},
    {"/bars", "pattern=smpte", false},
    {"/blink", "pattern=blink foreground-color=0xffc83c28 background-color=0xff1e5ab4", false},
    {"/clock", "pattern=ball", true},
};

const char h264[] = "x264enc tune=zerolatency speed-preset=ultrafast key-int-max=30 ! "
                    "rtph264pay name=pay0 pt=96 config-interval=-1";
const char h265[] = "x265enc tune=zerolatency speed-preset=ultrafast key-int-max=30 ! "
                    "rtph265pay name=pay0 pt=96 config-interval=-1";
const char jpeg[] = "jpegenc ! rtpjpegpay name=pay0 pt=26";
const char plain[] = "format=I420";
const char full[] = "format=I420,colorimetry=1:4:0:0";

const Coding codings[] = {
    {"/h264", plain, h264, 640, 480},      {"/h265", plain, h265, 640, 480},
    {"/mjpeg", full, jpeg, 640, 480},      {"/hd", plain, h264, 1920, 1080},
    {"/hd-h265", plain, h265, 1920, 1080}, {"/hd-mjpeg", full, jpeg, 1920, 1080},
};

std::string pipeline(const Scene& scene, const Coding& coding)
{
    return std::string("( videotestsrc name=pictures is-live=true ") + scene.source +
           " ! video/x-raw," + coding.format +
           ",framerate=30/1,width=" + std::to_string(coding.width) +
           ",height=" + std::to_string(coding.height) + " ! " + coding.encoder + " )";
}

GstPadProbeReturn paintClock(GstPad*, GstPadProbeInfo* info, gpointer)
{
    GstBuffer* buffer = gst_buffer_make_writable(GST_PAD_PROBE_INFO_BUFFER(info));
    info->data = buffer;
    const GstVideoMeta* picture = gst_buffer_get_video_meta(buffer);
    const int stride = picture ? picture->stride[0] : 0;
    GstMapInfo map;
    if (picture && gst_buffer_map(buffer, &map, GST_MAP_WRITE)) {
        clockcode::paint(map.data, stride, clockcode::now());
        gst_buffer_unmap(buffer, &map);
    }
    return GST_PAD_PROBE_OK;
}

void addClock(GstRTSPMediaFactory*, GstRTSPMedia* media, gpointer)
{
    GstElement* bin = gst_rtsp_media_get_element(media);
    GstElement* pictures = gst_bin_get_by_name(GST_BIN(bin), "pictures");
    GstPad* pad = gst_element_get_static_pad(pictures, "src");
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, paintClock, nullptr, nullptr);
    g_object_unref(pad);
    g_object_unref(pictures);
    g_object_unref(bin);
}

const char role[] = "viewer";

void addStream(GstRTSPServer* server, const Scene& scene, const Coding& coding,
               const Arguments& arguments)
{
    GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new();
    gst_rtsp_media_factory_set_launch(factory, pipeline(scene, coding).c_str());
    if (scene.clock)
        g_signal_connect(factory, "media-configure", G_CALLBACK(addClock), nullptr);
    gst_rtsp_media_factory_set_shared(factory, TRUE);
    if (arguments.udpOnly)
        gst_rtsp_media_factory_set_protocols(factory, GST_RTSP_LOWER_TRANS_UDP);
    if (!arguments.user.empty())
        gst_rtsp_media_factory_add_role(factory, role, GST_RTSP_PERM_MEDIA_FACTORY_ACCESS,
                                        G_TYPE_BOOLEAN, TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT,
                                        G_TYPE_BOOLEAN, TRUE, nullptr);
    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(server);
    const std::string path = std::string(scene.path) + coding.path;
    gst_rtsp_mount_points_add_factory(mounts, path.c_str(), factory);
    g_object_unref(mounts);
}

void demandCredentials(GstRTSPServer* server, const Arguments& arguments)
{
    GstRTSPAuth* auth = gst_rtsp_auth_new();
    GstRTSPToken* token =
        gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, role, nullptr);
    const char* user = arguments.user.c_str();
    const char* password = arguments.password.c_str();
    if (arguments.digest) {
        gst_rtsp_auth_set_supported_methods(auth, GST_RTSP_AUTH_DIGEST);
        gst_rtsp_auth_add_digest(auth, user, password, token);
    } else {
        gchar* basic = gst_rtsp_auth_make_basic(user, password);
        gst_rtsp_auth_add_basic(auth, basic, token);
        g_free(basic);
    }
    gst_rtsp_server_set_auth(server, auth);
    gst_rtsp_token_unref(token);
    g_object_unref(auth);
}

void addStreams(GstRTSPServer* server, const Arguments& arguments)
{
    for (const Scene& scene : scenes) {
        for (const Coding& coding : codings)
            addStream(server, scene, coding, arguments);
    }
}

} // namespace

int main(int argc, char** argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    Arguments arguments;
    if (!parse(argc, argv, &arguments))
        return 2;
    gst_init(nullptr, nullptr);

    GstRTSPServer* server = gst_rtsp_server_new();
    gst_rtsp_server_set_address(server, "127.0.0.1");
    gst_rtsp_server_set_service(server, arguments.port.c_str());
    addStreams(server, arguments);
    if (!arguments.user.empty())
        demandCredentials(server, arguments);
    if (gst_rtsp_server_attach(server, nullptr) == 0)
        return 1;
    std::printf("PORT %d\nREADY\n", gst_rtsp_server_get_bound_port(server));
    std::fflush(stdout);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
