"""The effects that the module offers, in the host's order, and the services among which they stand."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Effect:
    name: str
    guid: str
    has_dialog: bool = False
    payload: str = ""
    is_hidden: bool = False


EFFECTS = [
    Effect("Skip Silence", "{0860E415-B70D-4453-AFE7-A0964C4B162F}", has_dialog=True,
           payload="88130000C4FFFFFF01000000"),
    Effect("Hard -6dB limiter", "{CB592C20-2E33-4972-925F-3FBB6BDBA9BF}"),
    Effect("Advanced Limiter", "{11B13A25-C282-41F6-B1F0-CEB7ECBCEAA8}"),
    Effect("Move stereo to rear channels", "{E24420A0-5DC6-4EE1-8AE2-02452E8D8DFB}"),
    Effect("Convert stereo to 4 channels", "{7AAB4CE8-414A-427E-8228-78CD4A47388F}"),
    Effect("Reverse stereo channels", "{45BAE3C0-10B1-4008-BAAC-C5E6CEB06BA2}"),
    Effect("Convert mono to stereo", "{F661D118-5627-40AD-AB31-CCCF71A4819D}"),
    Effect("Crossfader", "{AD158637-3B75-4749-A285-50362DCAF461}", has_dialog=True, payload="D0070000"),
    Effect("Upmix to 7.1", "{66131A69-35E4-4323-83B0-0737595D8507}"),
    Effect("Upmix to 5.1", "{ABA20225-956A-45D9-93D6-9FDC8B9B4633}"),
    Effect("Resampler (RetroArch)", "{421C3E6E-F642-465D-8DBD-DEE5287561D6}", has_dialog=True,
           payload="44AC0000020000000000000000"),
    Effect("Downmix channels to mono", "{EFC441DD-C7B4-4F34-974A-D3058F3A1BDE}"),
    Effect("Downmix channels to stereo", "{866233BB-C466-43E6-AFC4-8B7BE563D912}"),
    Effect("Resampler (dBpoweramp/SSRC)", "{4D26D35C-5DA8-4F9C-AE8F-5A4C8B8FEE40}", has_dialog=True,
           payload="44AC0000000000000000000000"),
    Effect("Meier Crossfeed", "{D487D723-FD8C-4106-9023-5620AEA0A885}", has_dialog=True, payload="E8030000"),
    Effect("layout_limiter", "{8D7DED25-A094-49BF-810C-863F522D77EF}", payload="03000000", is_hidden=True),
    Effect("layout_converter", "{B3BDC598-C578-4662-8288-D177B2155DB2}", payload="03000000", is_hidden=True),
]

# Kind and name.
SERVICES = [
    ("effect", "Skip Silence"),
    ("effect", "Hard -6dB limiter"),
    ("effect", "Advanced Limiter"),
    ("file name check", ""),
    ("component version", ""),
    ("effect", "Move stereo to rear channels"),
    ("effect", "Convert stereo to 4 channels"),
    ("effect", "Reverse stereo channels"),
    ("effect", "Convert mono to stereo"),
    ("effect", "Crossfader"),
    ("effect", "Upmix to 7.1"),
    ("effect", "Upmix to 5.1"),
    ("effect", "Resampler (RetroArch)"),
    ("effect", "Downmix channels to mono"),
    ("effect", "Downmix channels to stereo"),
    ("effect", "Resampler (dBpoweramp/SSRC)"),
    ("effect", "Meier Crossfeed"),
    ("layout effect", "{8D7DED25-A094-49BF-810C-863F522D77EF}"),
    ("layout effect", "{B3BDC598-C578-4662-8288-D177B2155DB2}"),
]
