"""One run of the program that is driven on the present X display, step by step."""

import configparser
import os
import pathlib
import re
import shutil
import subprocess
import time

import desktop
import widgets
from canvas import Canvas
from desktop import Image
from widgets import LINKS, Program, wait_for

NO_CAMERA = "Open Video Source..."


class Failure(Exception):
    """The program does not do what the step asks."""


def check(condition, message):
    if not condition:
        raise Failure(message)


def check_near(value, expected, tolerance, what):
    check(value is not None, f"{what} is missing")
    check(abs(value - expected) <= tolerance,
          f"{what} is {value:g} instead of {expected:g} within {tolerance:g}")


def store_settings(settings):
    """Writes what the program finds stored when it starts, each as group/key=value."""
    stored = configparser.ConfigParser()
    stored.optionxform = str
    for setting in settings:
        key, value = setting.split("=", 1)
        group, name = key.split("/", 1)
        stored.setdefault(group, {})
        stored[group][name] = value
    folder = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "Orvo"
    folder.mkdir(parents=True, exist_ok=True)
    with open(folder / "Orvo.conf", "w", encoding="utf-8") as file:
        stored.write(file, space_around_delimiters=False)


def size_of_text(text):
    """The width and the height of a text such as 640x480 or 640 x 480."""
    width, height = re.split(r"\s*x\s*", text.lower())
    return int(width), int(height)


class Session:
    """The methods whose names are in STEPS are the steps, in order. Each leaves a screenshot in the
    output folder."""

    STEPS = ()

    def __init__(self, program, output, scale, video_size, environment=None):
        output.mkdir(parents=True, exist_ok=True)
        self.output = output
        self.log = open(output / "orvo.log", "w", encoding="utf-8")
        self.files = []
        widgets.pixel_ratio = scale
        widgets.connect()
        self.process = subprocess.Popen(
            [program], stdout=self.log, stderr=self.log,
            env=os.environ | {"QT_SCALE_FACTOR": str(scale)} | (environment or {}))
        self.program = Program("Orvo")
        self.canvas = Canvas(self.program, video_size)

    def run(self, steps=None):
        """The exit status: 0 when every step did what it should; all steps when none are named."""
        try:
            for number, name in enumerate(steps or self.STEPS, 1):
                self.run_step(number, name)
        except Failure:
            return 1
        finally:
            self.stop()
        for file in self.files:
            print(f"saved {file}")
        return 0

    def run_step(self, number, name):
        began = time.monotonic()
        try:
            getattr(self, name)()
            self.save_screenshot(f"step-{number:02}-{name.replace('_', '-')}.png")
        except Exception as error:
            print(f"step {number:02} {name} failed: {error}", flush=True)
            self.keep_evidence()
            raise Failure(f"{name}: {error}") from error
        print(f"step {number:02} {name} ({time.monotonic() - began:.1f} s)", flush=True)

    def stop(self):
        if not self.ended():
            self.process.kill()
            self.process.wait()
        self.log.close()

    def save_screenshot(self, name):
        shot = Image.of_screen()
        shot.save(self.output / name)
        check(shot.colours() > 1 or self.ended(), "the screen is blank")

    def keep_evidence(self):
        Image.of_screen().save(self.output / "failed.png")
        (self.output / "widgets.txt").write_text(self.program.describe(), encoding="utf-8")
        lines = (self.output / "orvo.log").read_text(encoding="utf-8", errors="replace").splitlines()
        print(f"the last of what the program wrote to {self.log.name}:", *lines[-20:], sep="\n  ",
              flush=True)

    # What steps are made of

    def ended(self):
        return self.process.poll() is not None

    def wait_for_start(self):
        wait_for(lambda: self.ended() or self.program.root(), "the program to show up", 20)
        check(not self.ended(), f"the program ended with status {self.process.returncode}")
        self.program.find(LINKS, re.escape(NO_CAMERA))
        time.sleep(0.5)

    def open(self, source):
        """Opens a source of the module sources by the dialog."""
        desktop.click(self.program.find(LINKS, re.escape(NO_CAMERA)).rect.center)
        source.choose(self.program)
        wait_for(lambda: self.messages() or not self.program.find_all(LINKS, re.escape(NO_CAMERA)),
                 "the camera's name in the side bar", 15)
        self.check_no_message()
        wait_for(lambda: self.frame_rate() > 1, "a frame rate above 1", 8)

    def messages(self):
        """The texts of the message boxes that show."""
        return [label.name for alert in self.program.find_all("alert")
                for label in alert.find_all("label")]

    def check_no_message(self):
        check(not self.messages(), f"the program says {self.messages()}")

    def frame_rate(self):
        return float(self.program.find("label", r"\d+\.\d\d fps").name.split()[0])

    def picture_moves(self):
        before = Image.of_screen()
        time.sleep(0.7)
        return Image.of_screen().changed(before, self.canvas.rect) > 0

    def new_file(self, folder, action):
        """The file that appears in the folder after the action, once it is complete."""
        known = set(folder.glob("*"))
        action()
        path = wait_for(lambda: next(iter(set(folder.glob("*")) - known), None),
                        f"a file in {folder}", 10)
        self.wait_until_written(path)
        self.files.append(shutil.copy(path, self.output))
        return path

    @staticmethod
    def wait_until_written(path):
        sizes = [-1]

        def settled():
            sizes.append(path.stat().st_size)
            return sizes[-1] > 0 and sizes[-1] == sizes[-2]
        wait_for(settled, f"{path.name} to be complete", 10)

    def end(self):
        """Ends the program by its close button, after having cancelled that once."""
        self.ask_to_exit("Cancel")
        time.sleep(0.3)
        check(not self.ended(), "the program ended although the exit was cancelled")
        self.ask_to_exit("OK")
        try:
            status = self.process.wait(10)
        except subprocess.TimeoutExpired as error:
            raise Failure("the program does not end") from error
        check(status == 0, f"the program ended with status {status}")

    def ask_to_exit(self, answer):
        desktop.click(self.program.button("Close").rect.center)
        question = [label.name for label in self.program.message().find_all("label")]
        check("Do you want to exit Orvo ?" in question, f"the question is {question}")
        self.save_screenshot("exit-question.png")
        desktop.click(self.program.button(answer).rect.center)
