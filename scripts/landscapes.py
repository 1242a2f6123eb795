"""Paints pictures that look like somebody's photos of journeys, each from a seed; ImageMagick does the drawing."""

import math
import os
import random
import subprocess


def hsl(hue, saturation, lightness, alpha=1.0):
    return f"hsla({hue % 360:.0f},{saturation:.0f}%,{lightness:.0f}%,{alpha:.2f})"


class Picture:
    """Layers of one picture, from the back to the front."""

    def __init__(self, seed, width, height):
        self.random = random.Random(seed)
        self.seed, self.width, self.height = seed, width, height
        self.size = f"{width}x{height}"
        self.command = ["convert", "-seed", str(seed)]

    def sky(self, top, middle, horizon, share=0.62):
        upper = round(self.height * share * 0.6)
        lower = self.height - upper
        self.command += ["(", "-size", f"{self.width}x{upper}", f"gradient:{top}-{middle}",
                         "-size", f"{self.width}x{lower}", f"gradient:{middle}-{horizon}", "-append", ")"]

    def over(self, *layer, compose="over"):
        self.command += ["(", *layer, ")", "-compose", compose, "-composite"]

    def drawn(self, fill, shape, *after, compose="over"):
        self.over("-size", self.size, "xc:none", "-fill", fill, "-draw", shape, *after, compose=compose)

    def glow(self, x, y, radius, colour):
        """Light that fades away around a point."""
        diameter = round(radius * 2)
        self.command += ["(", "-size", f"{diameter}x{diameter}", f"radial-gradient:{colour}-black", ")", "-geometry",
                         f"{round(x - radius):+d}{round(y - radius):+d}", "-compose", "screen", "-composite"]

    def disc(self, x, y, radius, colour):
        self.drawn(colour, f"circle {x:.0f},{y:.0f} {x + radius:.0f},{y:.0f}", "-blur", "0x1.5")

    def clouds(self, colour, amount=0.5):
        """Torn clouds, denser towards the top."""
        self.over("-size", self.size, f"xc:{colour}",
                  "(", "-size", "240x90", "plasma:gray50-gray50", "-colorspace", "Gray", "-blur", "0x1.2", "-auto-level",
                  "-level", "48%,100%", "-resize", f"{self.size}!", "-blur", "0x3",
                  "(", "-size", self.size, "gradient:white-black", "-level", "30%,100%", ")", "-compose", "multiply",
                  "-composite", "-evaluate", "multiply", str(amount), ")",
                  "-compose", "copy_opacity", "-composite")

    def shape(self, points, top, bottom, highest=0.0):
        """An area of land, coloured from its highest point down to the picture's lower edge."""
        y = round(self.height * highest)
        outline = " ".join(f"{px:.0f},{py:.0f}" for px, py in [(0, self.height + 2), *points, (self.width, self.height + 2)])
        self.over("-size", f"{self.width}x{max(self.height - y, 1)}", f"gradient:{top}-{bottom}", "-background", top,
                  "-gravity", "south", "-extent", self.size, "-gravity", "northwest",
                  "(", "-size", self.size, "xc:black", "-fill", "white", "-draw", f"polygon {outline}", ")",
                  "-alpha", "off", "-compose", "copy_opacity", "-composite")

    def ridge(self, level, roughness, steps=160):
        """Points of a chain of hills around a level: midpoints put off by chance, over and over."""
        heights = [self.random.uniform(-1, 1), self.random.uniform(-1, 1)]
        reach = 1.0
        while len(heights) < steps:
            heights = [value for a, b in zip(heights, heights[1:])
                       for value in (a, (a + b) / 2 + self.random.uniform(-reach, reach))] + [heights[-1]]
            reach *= roughness
        last = len(heights) - 1
        return [(self.width * i / last, self.height * (level + 0.085 * value)) for i, value in enumerate(heights)]

    def save(self, path):
        # A lens is darker at its edges.
        self.command += ["(", "-size", self.size, "radial-gradient:white-gray55", "-level", "0%,72%", ")", "-compose",
                         "multiply", "-composite", "-alpha", "off", "-quality", "93", str(path)]
        # Several pictures are painted at once: one thread each.
        subprocess.run(self.command, check=True, env=dict(os.environ, MAGICK_THREAD_LIMIT="1"))


def mountains(picture, hue):
    sky = hue + picture.random.uniform(-15, 15)
    picture.sky(hsl(sky, 52, 34), hsl(sky + 20, 50, 62), hsl(sky + 160, 60, 84))
    x, y = picture.width * picture.random.uniform(0.2, 0.8), picture.height * 0.34
    picture.glow(x, y, picture.height * 0.7, hsl(40, 90, 62))
    picture.disc(x, y, picture.height * 0.035, hsl(48, 100, 94))
    picture.clouds("white", 0.55)
    for layer in range(5):
        near = layer / 4
        level = 0.46 + 0.12 * layer
        picture.shape(picture.ridge(level, 0.52 + 0.02 * layer), hsl(sky + 8 * layer, 34 - 10 * near, 60 - 44 * near),
                      hsl(sky + 10 + 8 * layer, 34, 74 - 58 * near), level - 0.1)


def lake(picture, hue):
    """The upper half again below, upside down and stirred."""
    whole = picture.height
    picture.height = round(whole * 0.56)
    picture.size = f"{picture.width}x{picture.height}"
    mountains(picture, hue)
    picture.command += ["-alpha", "off", "(", "+clone", "-flip", "-motion-blur", "0x9+90", "-blur", "3x1",
                        "-modulate", "72,88", ")", "-append", "-crop", f"{picture.width}x{whole}+0+0", "+repage"]
    picture.height, picture.size = whole, f"{picture.width}x{whole}"
    for _ in range(26):
        y = whole * picture.random.uniform(0.57, 0.99)
        x = picture.width * picture.random.random()
        length = picture.width * picture.random.uniform(0.05, 0.3)
        picture.drawn(hsl(hue, 40, 92, 0.10), f"rectangle {x - length:.0f},{y:.0f} {x + length:.0f},{y + 1:.0f}")


def sea(picture, hue):
    picture.sky(hsl(hue + 200, 45, 26), hsl(hue + 330, 62, 56), hsl(hue + 10, 95, 72))
    x, horizon = picture.width * picture.random.uniform(0.3, 0.7), picture.height * 0.6
    picture.glow(x, horizon, picture.height * 0.8, hsl(hue, 95, 58))
    picture.disc(x, horizon - picture.height * 0.05, picture.height * 0.07, hsl(hue + 20, 100, 88))
    picture.clouds(hsl(hue + 350, 70, 70), 0.6)
    picture.shape([(0, horizon), (picture.width, horizon)], hsl(hue + 345, 45, 42), hsl(hue + 205, 50, 13), 0.6)
    strokes = []
    for _ in range(420):
        depth = picture.random.random() ** 1.6
        y = horizon + depth * (picture.height - horizon)
        spread = picture.width * (0.03 + 0.2 * depth)
        middle, half = picture.random.gauss(x, spread), (3 + 26 * depth) * picture.random.uniform(0.4, 1.4)
        strokes.append(f"rectangle {middle - half:.0f},{y:.0f} {middle + half:.0f},{y + 1 + 2 * depth:.0f}")
    picture.drawn(hsl(hue + 15, 95, 78, 0.5), " ".join(strokes), "-blur", "0x0.7")


def dunes(picture, hue):
    picture.sky(hsl(hue + 175, 45, 45), hsl(hue + 180, 40, 68), hsl(hue + 5, 60, 86))
    for layer in range(5):
        base = 0.45 + 0.13 * layer
        a, b, c = (picture.random.uniform(0, 6.3) for _ in range(3))
        line = [(picture.width * i / 90, picture.height * (base + 0.07 * math.sin(i / 90 * 4.4 + a)
                 + 0.025 * math.sin(i / 90 * 9 + b) + 0.004 * math.sin(i / 90 * 60 + c))) for i in range(91)]
        picture.shape(line, hsl(hue + 2 * layer, 62, 70 - 7 * layer), hsl(hue - 6, 58, 40 - 6 * layer), base - 0.1)
        # The side that the light does not reach.
        shade = [(x, y + picture.height * (0.02 + 0.05 * (1 + math.sin(x / picture.width * 7 + a)))) for x, y in line]
        picture.drawn(hsl(hue - 14, 50, 20, 0.22), "polygon " + " ".join(
            f"{x:.0f},{y:.0f}" for x, y in line + shade[::-1]), "-blur", "0x3")


def aurora(picture, hue):
    picture.sky(hsl(225, 60, 7), hsl(215, 55, 13), hsl(190, 45, 24))
    stars = " ".join(f"circle {x:.1f},{y:.1f} {x + r:.1f},{y:.1f}" for x, y, r in (
        (picture.random.uniform(0, picture.width), picture.random.uniform(0, picture.height * 0.75),
         picture.random.uniform(0.4, 1.3)) for _ in range(260)))
    picture.drawn("rgba(255,255,255,0.8)", stars)
    for band in range(3):
        start = picture.random.uniform(0, 6.3)
        line = " ".join(f"{picture.width * i / 60:.0f},{picture.height * (0.3 + 0.1 * band + 0.09 * math.sin(i / 9 + start)):.0f}"
                        for i in range(-4, 65))
        picture.over("-size", picture.size, "xc:black", "-fill", "none", "-stroke", hsl(hue + 28 * band, 85, 50),
                     "-strokewidth", str(round(picture.height * 0.05)), "-draw", f"polyline {line}", "-stroke", "none",
                     "-scale", "12%", "-motion-blur", f"0x{picture.height // 60}+90", "-resize", f"{picture.size}!",
                     "-level", "0%,55%", compose="screen")
    picture.shape(picture.ridge(0.78, 0.55), hsl(210, 40, 8), hsl(205, 35, 3), 0.7)
    picture.shape(picture.ridge(0.9, 0.6), hsl(210, 40, 4), hsl(205, 35, 2), 0.85)


def forest(picture, hue):
    picture.sky(hsl(hue + 40, 18, 72), hsl(hue + 30, 20, 84), hsl(hue + 20, 26, 92))
    picture.glow(picture.width * 0.7, picture.height * 0.2, picture.height * 0.6, hsl(45, 70, 40))
    for layer in range(5):
        near = layer / 4
        level, size = 0.5 + 0.11 * layer, picture.height * (0.07 + 0.16 * near)
        ground = picture.ridge(level + 0.1, 0.5)
        top, bottom = hsl(hue + 10 * near, 16 + 14 * near, 72 - 60 * near), hsl(hue, 16 + 10 * near, 82 - 70 * near)
        picture.shape(ground, top, bottom, level - 0.1)
        trees = []
        for x, y in ground[::3]:
            x += picture.random.uniform(-4, 4)
            tall, wide = size * picture.random.uniform(0.7, 1.3), size * 0.2
            for part in range(4):
                high = y - tall * (1 - part * 0.24)
                half = wide * (0.35 + 0.28 * part)
                trees.append(f"polygon {x:.0f},{high:.0f} {x - half:.0f},{high + tall * 0.36:.0f} "
                             f"{x + half:.0f},{high + tall * 0.36:.0f}")
        picture.drawn(top, " ".join(trees), "-blur", f"0x{1.6 - 1.3 * near:.1f}")


def city(picture, hue):
    picture.sky(hsl(hue + 215, 50, 16), hsl(hue + 290, 42, 38), hsl(hue, 75, 62), 0.8)
    picture.glow(picture.width * 0.4, picture.height * 0.75, picture.height * 0.7, hsl(hue, 80, 40))
    picture.clouds(hsl(hue + 330, 50, 60), 0.45)
    for layer in range(3):
        shade, x, blocks, lights = [34, 20, 8][layer], 0.0, [], []
        while x < picture.width:
            wide = picture.width * picture.random.uniform(0.025, 0.07)
            top = picture.height * (picture.random.uniform(0.36, 0.66) + 0.1 * layer)
            blocks.append(f"rectangle {x:.0f},{top:.0f} {x + wide:.0f},{picture.height}")
            step = 9 + 4 * layer
            lights += [f"rectangle {px},{py} {px + 2 + layer},{py + 3 + layer}"
                       for px in range(round(x) + 5, round(x + wide) - 6, step)
                       for py in range(round(top) + 7, picture.height, step) if picture.random.random() < 0.3]
            x += wide
        picture.drawn(hsl(hue + 240, 32, shade), " ".join(blocks))
        picture.drawn(hsl(picture.random.uniform(38, 50), 95, 72, 0.35 + 0.25 * layer), " ".join(lights), "-blur", "0x0.6")


def lights(picture, hue):
    """A street at night, out of focus."""
    picture.sky(hsl(hue, 40, 6), hsl(hue + 20, 45, 13), hsl(hue + 40, 50, 8))
    for size in (0.03, 0.055, 0.09):
        discs = []
        for _ in range(26):
            x, y = picture.random.uniform(0, picture.width), picture.random.gauss(picture.height * 0.5, picture.height * 0.2)
            colour = hsl(hue + picture.random.choice((0, 15, 40, 170, 200, 330)), 85, 62, 0.28)
            r = picture.height * size * picture.random.uniform(0.6, 1.2)
            discs.append(f"fill {colour} circle {x:.0f},{y:.0f} {x + r:.0f},{y:.0f}")
        picture.drawn("white", " ".join(discs), "-blur", f"0x{1 + size * 30:.1f}", compose="screen")


def paint(path, scene, seed, hue, width, height):
    picture = Picture(seed, width, height)
    scene(picture, hue)
    picture.save(path)
