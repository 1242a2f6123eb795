"""Small real media, made once per run with ffmpeg and then copied: big enough for the grid to list them."""

import functools
import os
import pathlib
import shutil
import subprocess

WORKSHOP = pathlib.Path(os.environ.get("XDG_RUNTIME_DIR", "/tmp")) / "samples"


def _ffmpeg(*arguments):
    subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-y", *map(str, arguments)], check=True)


@functools.cache
def _video(seconds, size):
    WORKSHOP.mkdir(exist_ok=True)
    path = WORKSHOP / f"{seconds}-{size}.mp4"
    _ffmpeg("-f", "lavfi", "-i", f"testsrc2=size={size}:rate=24:duration={seconds}",
            "-f", "lavfi", "-i", f"sine=frequency=440:duration={seconds}",
            "-c:v", "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p", "-c:a", "aac", "-shortest", path)
    return path


@functools.cache
def _photo(size):
    WORKSHOP.mkdir(exist_ok=True)
    path = WORKSHOP / f"{size}.jpg"
    _ffmpeg("-f", "lavfi", "-i", f"testsrc2=size={size},noise=alls=60", "-frames:v", "1", "-q:v", "1", path)
    return path


def video(path, seconds=4, size="640x360"):
    """Puts a video with picture and sound at a path (text, bytes or Path)."""
    shutil.copyfile(os.fsencode(_video(seconds, size)), os.fsencode(path))


def photo(path, size="800x600"):
    shutil.copyfile(os.fsencode(_photo(size)), os.fsencode(path))


def folder(path, videos=0, photos=0):
    """Makes a folder with "clip 1.mp4"… and "photo 1.jpg"…, and returns its path."""
    path = pathlib.Path(path)
    path.mkdir(parents=True, exist_ok=True)
    for index in range(1, videos + 1):
        video(path / f"clip {index}.mp4")
    for index in range(1, photos + 1):
        photo(path / f"photo {index}.jpg")
    return path
