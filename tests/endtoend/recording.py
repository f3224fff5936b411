"""A recorded video, as another program reads it."""

import json
import subprocess


class Recording:
    """The file's video. All its frames are decoded; errors on the way raise."""

    def __init__(self, path):
        probe = subprocess.run(
            ["ffprobe", "-v", "error", "-count_frames", "-select_streams", "v:0", "-show_streams",
             "-of", "json", str(path)], check=True, capture_output=True, text=True)
        if probe.stderr:
            raise RuntimeError(f"the recording has errors: {probe.stderr}")
        video = json.loads(probe.stdout)["streams"][0]
        self.size = video["width"], video["height"]
        self.duration = float(video["duration"])  # seconds
        self.frames = int(video["nb_read_frames"])

    @property
    def rate(self):
        """Frames a second on the average."""
        return self.frames / self.duration
