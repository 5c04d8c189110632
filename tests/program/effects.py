"""The effects that the module offers, in the host's order, and the services among which they stand."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Effect:
    name: str
    guid: str
    has_dialog: bool = False
    payload: str = ""


EFFECTS = [
    Effect("Hard -6dB limiter", "{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}"),
    Effect("Move stereo to rear channels", "{E24420A0-5DC6-4EE1-8AE2-02452E8D8DFB}"),
    Effect("Convert stereo to 4 channels", "{7AAB4CE8-414A-427E-8228-78CD4A47388F}"),
    Effect("Reverse stereo channels", "{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA2}"),
    Effect("Convert mono to stereo", "{F661D118-5627-40AD-AB31-CCCF71A4819D}"),
    Effect("Crossfader", "{AD158637-3B75-4749-A285-50362DCAF461}", has_dialog=True, payload="D0070000"),
    Effect("Downmix channels to mono", "{EFC441DD-C7B4-4F34-974A-D3058F3A1BDE}"),
    Effect("Downmix channels to stereo", "{866233BB-C466-43E6-AFC4-8B7BE563D912}"),
    Effect("Meier Crossfeed", "{D487D723-FD8C-4106-9023-5620AEA0A885}", has_dialog=True, payload="E8030000"),
]

# Kind and name.
SERVICES = [
    ("effect", "Hard -6dB limiter"),
    ("file name check", ""),
    ("component version", ""),
    ("effect", "Move stereo to rear channels"),
    ("effect", "Convert stereo to 4 channels"),
    ("effect", "Reverse stereo channels"),
    ("effect", "Convert mono to stereo"),
    ("effect", "Crossfader"),
    ("effect", "Downmix channels to mono"),
    ("effect", "Downmix channels to stereo"),
    ("effect", "Meier Crossfeed"),
]
