#!/usr/bin/env python3
"""Writes the SVG sources of Vantle Control's artwork beside this script and renders each to the
PNG the program loads, with rsvg-convert (Debian package librsvg2-bin). Run it after changing a
shape here; the program itself only ever reads the PNGs."""
import math
import os
import subprocess

SRC = os.path.dirname(os.path.abspath(__file__))
RES = os.path.dirname(SRC)

def write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as f:
        f.write(text)

def render(svg, png, w, h):
    os.makedirs(os.path.dirname(png), exist_ok=True)
    subprocess.run(["rsvg-convert", "-w", str(w), "-h", str(h), "-o", png, svg], check=True)

# ---------------------------------------------------------------- brand mark
# Drawn in a 334 x 355 box: a display frame behind, a solid display in front of it (with a gap
# cut around it so the two read as layered), a stand under the front display, and a sun over a
# wave cut out of the front screen.
def mark_defs(prefix, detail=True):
    gap = 24
    fx, fy, fw, fh, r = 104, 112, 218, 162, 26
    cut = ""
    if detail:
        # A sun over a wave: brightness and sound on the one display.
        cut = (f'<circle cx="{fx+154}" cy="{fy+48}" r="28" fill="black"/>'
               f'<path d="M {fx+26} {fy+118} C {fx+52} {fy+80}, {fx+84} {fy+80}, {fx+109} {fy+108} '
               f'S {fx+166} {fy+138}, {fx+fw-26} {fy+102}" fill="none" stroke="black" stroke-width="24" '
               f'stroke-linecap="round"/>')
    return f'''
    <mask id="{prefix}behind" maskUnits="userSpaceOnUse" x="0" y="0" width="334" height="355">
      <rect x="0" y="0" width="334" height="355" fill="white"/>
      <rect x="{fx-gap}" y="{fy-gap}" width="{fw+2*gap}" height="{fh+2*gap}" rx="{r+gap}" fill="black"/>
    </mask>
    <mask id="{prefix}screen" maskUnits="userSpaceOnUse" x="0" y="0" width="334" height="355">
      <rect x="0" y="0" width="334" height="355" fill="white"/>
      {cut}
    </mask>''', (fx, fy, fw, fh, r)

def mark_body(prefix, colour, front):
    fx, fy, fw, fh, r = front
    bw = 42  # stroke of the frame behind
    return f'''
  <g fill="{colour}">
    <rect x="{12+bw/2}" y="{30+bw/2}" width="{218-bw}" height="{162-bw}" rx="{26-bw/2+6}" fill="none"
          stroke="{colour}" stroke-width="{bw}" mask="url(#{prefix}behind)"/>
    <g mask="url(#{prefix}screen)">
      <rect x="{fx}" y="{fy}" width="{fw}" height="{fh}" rx="{r}"/>
    </g>
    <rect x="{fx+fw/2-20}" y="{fy+fh-4}" width="40" height="{318-(fy+fh-4)}"/>
    <rect x="{fx+fw/2-64}" y="306" width="128" height="30" rx="15"/>
  </g>'''

# ---------------------------------------------------------------- wordmark ORLEND
# Geometric capitals drawn from strokes on a 210-unit cap height; everything is clipped to the
# cap band so that stroke ends on the baseline and cap line come out flat.
def wordmark():
    s = 56   # stroke weight
    H = 210  # cap height; top at 0, baseline at H
    h = s / 2
    letters = []
    x = 0
    gap = 50
    # O
    r = (H - s) / 2
    letters.append(f'<circle cx="{x+H/2}" cy="{H/2}" r="{r}" fill="none" stroke-width="{s}"/>')
    x += H + gap
    # R
    bowl_r = 50
    letters.append(f'<path d="M {x+h} {-20} V {H+20}" fill="none" stroke-width="{s}"/>'
                   f'<path d="M {x} {h} H {x+96} A {bowl_r} {bowl_r} 0 0 1 {x+96} {h+2*bowl_r} H {x}" '
                   f'fill="none" stroke-width="{s}"/>'
                   f'<path d="M {x+92} {h+2*bowl_r} L {x+168} {H+40}" fill="none" stroke-width="{s+6}"/>')
    x += 96 + bowl_r + h + gap - 4
    # L
    letters.append(f'<path d="M {x+h} {-20} V {H-h} H {x+160}" fill="none" stroke-width="{s}" stroke-linejoin="miter"/>')
    x += 160 + gap - 6
    # E
    letters.append(f'<path d="M {x+160} {h} H {x+h} V {H-h} H {x+160}" fill="none" stroke-width="{s}" stroke-linejoin="miter"/>'
                   f'<path d="M {x+h} {H/2} H {x+138}" fill="none" stroke-width="{s-4}"/>')
    x += 160 + gap
    # N
    w = 196
    letters.append(f'<path d="M {x+h} {H+20} V {-20}" fill="none" stroke-width="{s}"/>'
                   f'<path d="M {x+w-h} {H+20} V {-20}" fill="none" stroke-width="{s}"/>'
                   f'<polygon points="{x},{-1} {x+s+18},{-1} {x+w},{H+1} {x+w-s-18},{H+1}"/>')
    x += w + gap
    # D
    dr = (H - s) / 2
    letters.append(f'<path d="M {x+h} {-20} V {H+20}" fill="none" stroke-width="{s}"/>'
                   f'<path d="M {x} {h} H {x+92} A {dr} {dr} 0 0 1 {x+92} {H-h} H {x}" fill="none" stroke-width="{s}"/>')
    x += 92 + dr + h
    return "\n      ".join(letters), x, H

def logo_svg():
    defs, front = mark_defs("m")
    letters, width, H = wordmark()
    scale = 1.1
    left = 440
    top = (355 - H * scale) / 2
    return f'''<svg xmlns="http://www.w3.org/2000/svg" width="1996" height="355" viewBox="0 0 1996 355">
  <!-- Orlend logo: the brand mark in x 0..334, the wordmark to the right of x 400. One colour,
       used by the program as a template and tinted. Wordmark width {width*scale:.0f}. -->
  <defs>{defs}
    <clipPath id="band"><rect x="-10" y="0" width="2000" height="{H}"/></clipPath>
  </defs>{mark_body("m", "#000000", front)}
  <g transform="translate({left} {top:.2f}) scale({scale})" fill="#000000" stroke="#000000">
    <g clip-path="url(#band)">
      {letters}
    </g>
  </g>
</svg>
'''


# ---------------------------------------------------------------- application icon
def app_icon_svg(size):
    # Small sizes get the plain mark (no sun and wave) drawn larger, so it stays a clear shape.
    small = size <= 16
    defs, front = mark_defs("m", detail=not small)
    inset = 0.5
    radius = size * 0.22
    mark_h = size * (0.80 if small else 0.70)
    scale = mark_h / 355
    mark_w = 334 * scale
    tx = (size - mark_w) / 2
    ty = (size - mark_h) / 2
    edge = max(1.0, size / 128)
    return f"""<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" viewBox="0 0 {size} {size}">
  <!-- Vantle Control application icon, {size} px: the brand mark in amber on a rounded dark square. -->
  <defs>{defs}
  </defs>
  <rect x="{inset}" y="{inset}" width="{size-2*inset}" height="{size-2*inset}" rx="{radius:.2f}"
        fill="#262626" stroke="#4a4a4a" stroke-width="{edge:.2f}"/>
  <g transform="translate({tx:.3f} {ty:.3f}) scale({scale:.5f})">{mark_body("m", "#E6AD00", front)}
  </g>
</svg>
"""

# ---------------------------------------------------------------- tray icon
# Two overlapping display outlines, laid out per size on the pixel grid. Each entry: light
# stroke w, outline d, back and front frames as outer pixel edges (x0, y0, x1, y1), corner
# radius, the stand's neck (width, top, bottom) and base (width, top, bottom).
TRAY = {
    16: dict(w=2, d=1, back=(1, 2, 12, 10), front=(5, 6, 15, 13), r=1.5, neck=(2, 13, 14), base=(6, 14, 15), outside=True),
    22: dict(w=2, d=1, back=(1, 2, 15, 13), front=(7, 7, 21, 17), r=2, neck=(2, 17, 19), base=(8, 19, 21)),
    24: dict(w=2, d=1, back=(1, 2, 16, 14), front=(7, 8, 23, 19), r=2, neck=(2, 19, 21), base=(8, 21, 23)),
    32: dict(w=3, d=1, back=(2, 3, 21, 18), front=(10, 11, 30, 25), r=3, neck=(3, 25, 28), base=(10, 28, 30)),
    48: dict(w=4, d=2, back=(3, 4, 32, 27), front=(15, 17, 45, 38), r=4, neck=(4, 38, 42), base=(16, 42, 45)),
    64: dict(w=5, d=2, back=(4, 5, 42, 36), front=(20, 22, 60, 50), r=6, neck=(6, 50, 55), base=(22, 55, 60)),
}

def frame_path(box, w, r):
    x0, y0, x1, y1 = box
    h = w / 2
    return (f'<rect x="{x0+h}" y="{y0+h}" width="{x1-x0-w}" height="{y1-y0-w}" rx="{max(r-h, 0.5)}" '
            f'fill="none" stroke-width="{w}"/>')

def tray_svg(size, fg, outline, outline_opacity):
    t = TRAY[size]
    w, d = t["w"], t["d"]
    fx0, fy0, fx1, fy1 = t["front"]
    cx = (fx0 + fx1) / 2
    nw, nt, nb = t["neck"]
    bw, bt, bb = t["base"]
    inside = ""
    if t.get("outside"):
        # At the smallest size an outline inside the frames would leave no screen to see: the
        # outline runs along the outside only.
        for x0, y0, x1, y1 in (t["back"], t["front"]):
            inside += f'\n      <rect x="{x0+w}" y="{y0+w}" width="{x1-x0-2*w}" height="{y1-y0-2*w}" fill="black"/>'
    return f"""<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" viewBox="0 0 {size} {size}">
  <!-- Vantle Control tray icon, {size} px: two overlapping displays on the pixel grid, with a
       thin outline so that the icon reads on light and on dark panels. -->
  <defs>
    <mask id="behind" maskUnits="userSpaceOnUse" x="0" y="0" width="{size}" height="{size}">
      <rect width="{size}" height="{size}" fill="white"/>
      <rect x="{fx0-d}" y="{fy0-d}" width="{fx1-fx0+2*d}" height="{fy1-fy0+2*d}" fill="black"/>
    </mask>
    <g id="shape" fill="none" stroke="currentColor">
      <g mask="url(#behind)">{frame_path(t["back"], w, t["r"])}</g>
      {frame_path(t["front"], w, t["r"])}
      <rect x="{cx-nw/2}" y="{nt-0.5}" width="{nw}" height="{nb-nt+0.5}" fill="currentColor" stroke="none"/>
      <rect x="{cx-bw/2}" y="{bt}" width="{bw}" height="{bb-bt}" rx="{min(1, (bb-bt)/2)}" fill="currentColor" stroke="none"/>
    </g>
    <filter id="halo" filterUnits="userSpaceOnUse" x="0" y="0" width="{size}" height="{size}">
      <feMorphology in="SourceAlpha" operator="dilate" radius="{d}" result="grown"/>
      <feFlood flood-color="{outline}" flood-opacity="{outline_opacity}"/>
      <feComposite in2="grown" operator="in"/>
    </filter>
    <mask id="inside" maskUnits="userSpaceOnUse" x="0" y="0" width="{size}" height="{size}">
      <rect width="{size}" height="{size}" fill="white"/>{inside}
    </mask>
  </defs>
  <g mask="url(#inside)"><use href="#shape" filter="url(#halo)" style="color:#000"/></g>
  <use href="#shape" style="color:{fg}"/>
</svg>
"""

# ---------------------------------------------------------------- OSD symbols
# White on transparent, 128 px, for desktops whose icon theme has no symbol of its own.
def speaker():
    return ('<rect x="16" y="47" width="26" height="34" rx="5"/>'
            '<path d="M 40 48 L 66 27 L 66 101 L 40 80 Z" stroke="#fff" stroke-width="8" stroke-linejoin="round"/>')

def osd_svg(name):
    if name == "volume":
        body = speaker() + ''.join(
            f'<path d="M {70+r*math.cos(math.radians(-42)):.2f} {64+r*math.sin(math.radians(-42)):.2f} '
            f'A {r} {r} 0 0 1 {70+r*math.cos(math.radians(42)):.2f} {64+r*math.sin(math.radians(42)):.2f}" '
            f'fill="none" stroke="#fff" stroke-width="10" stroke-linecap="round"/>' for r in (20, 40))
        title = "a speaker with sound waves"
    elif name == "muted":
        body = speaker() + ('<path d="M 84 48 L 112 76 M 112 48 L 84 76" fill="none" stroke="#fff" '
                            'stroke-width="10" stroke-linecap="round"/>')
        title = "a speaker with a cross: muted"
    else:
        rays = ''.join(
            f'<line x1="{64+36*math.cos(a):.2f}" y1="{64+36*math.sin(a):.2f}" x2="{64+51*math.cos(a):.2f}" '
            f'y2="{64+51*math.sin(a):.2f}"/>' for a in (math.radians(i * 45) for i in range(8)))
        body = f'<circle cx="64" cy="64" r="23"/><g stroke="#fff" stroke-width="10" stroke-linecap="round">{rays}</g>'
        title = "a sun: brightness"
    return f"""<svg xmlns="http://www.w3.org/2000/svg" width="128" height="128" viewBox="0 0 128 128">
  <!-- On-screen display symbol: {title}. -->
  <g fill="#fff">{body}</g>
</svg>
"""

def main():
    write(os.path.join(SRC, "OrlendLogo.svg"), logo_svg())
    render(os.path.join(SRC, "OrlendLogo.svg"), os.path.join(RES, "OrlendLogo.png"), 1996, 355)
    for size in (16, 32, 48, 64, 128, 256):
        svg = os.path.join(SRC, "icons", f"vantle-control-{size}.svg")
        write(svg, app_icon_svg(size))
        render(svg, os.path.join(RES, "icons", "hicolor", f"{size}x{size}", "apps", "vantle-control.png"), size, size)
    for size in TRAY:
        for name, fg, outline, opacity in (("vantle-control", "#f2f2f2", "#1a1a1a", 0.85),
                                           ("vantle-control-dark", "#2b2b2b", "#ffffff", 0.55)):
            svg = os.path.join(SRC, "tray", f"{name}-{size}.svg")
            write(svg, tray_svg(size, fg, outline, opacity))
            render(svg, os.path.join(RES, "tray", f"{name}-{size}.png"), size, size)
    for name in ("volume", "muted", "brightness"):
        svg = os.path.join(SRC, "osd", f"osd-{name}.svg")
        write(svg, osd_svg(name))
        render(svg, os.path.join(RES, "osd", f"osd-{name}.png"), 128, 128)

if __name__ == "__main__":
    main()
