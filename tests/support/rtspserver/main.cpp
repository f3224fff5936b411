// A small RTSP server for tests, with made-up pictures: /h264 /h265 /mjpeg (640 x 480) and /hd
// (1920 x 1080 H.264). Listens on 127.0.0.1,
// prints "PORT n" and "READY", and dies with its parent.
//
//   rtspserver [--port N] [--user NAME --password TEXT [--digest]] [--udp-only]

#include <gst/rtsp-server/rtsp-server.h>

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

std::string pictures(int width, int height)
{
    return "( videotestsrc is-live=true pattern=ball ! "
           "video/x-raw,format=I420,framerate=30/1,width=" +
           std::to_string(width) + ",height=" + std::to_string(height) + " ! ";
}

const char role[] = "viewer";

void addStream(GstRTSPServer* server, const char* path, const std::string& pipeline,
               const Arguments& arguments)
{
    GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new();
    gst_rtsp_media_factory_set_launch(factory, (pipeline + " )").c_str());
    gst_rtsp_media_factory_set_shared(factory, TRUE);
    if (arguments.udpOnly)
        gst_rtsp_media_factory_set_protocols(factory, GST_RTSP_LOWER_TRANS_UDP);
    if (!arguments.user.empty())
        gst_rtsp_media_factory_add_role(factory, role, GST_RTSP_PERM_MEDIA_FACTORY_ACCESS,
                                        G_TYPE_BOOLEAN, TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT,
                                        G_TYPE_BOOLEAN, TRUE, nullptr);
    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(server);
    gst_rtsp_mount_points_add_factory(mounts, path, factory);
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
    const std::string x264 = "x264enc tune=zerolatency speed-preset=ultrafast key-int-max=30 ! "
                             "rtph264pay name=pay0 pt=96 config-interval=-1";
    addStream(server, "/h264", pictures(640, 480) + x264, arguments);
    addStream(server, "/hd", pictures(1920, 1080) + x264, arguments);
    addStream(server, "/h265",
              pictures(640, 480) +
                  "x265enc tune=zerolatency speed-preset=ultrafast key-int-max=30 ! "
                  "rtph265pay name=pay0 pt=96 config-interval=-1",
              arguments);
    addStream(server, "/mjpeg", pictures(640, 480) + "jpegenc ! rtpjpegpay name=pay0 pt=26",
              arguments);
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
