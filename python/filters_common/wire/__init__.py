"""The five wire messages of the library compiled for Python protocol
buffers: filter_matches_pb2.MatchPB, filter_actions_pb2.ActionPB,
filter_counter_pb2.CounterPB, filter_entries_pb2.FiltersEntryPB and
filter_groups_pb2.FiltersGroupPB. Generated at build time from protobuf/."""

from . import (  # noqa: F401
    filter_actions_pb2,
    filter_counter_pb2,
    filter_entries_pb2,
    filter_groups_pb2,
    filter_matches_pb2,
)

__all__ = [
    "filter_actions_pb2",
    "filter_counter_pb2",
    "filter_entries_pb2",
    "filter_groups_pb2",
    "filter_matches_pb2",
]
