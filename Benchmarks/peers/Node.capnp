# The document as a recursive structure: a map is a list whose elements have keys.
@0xb7f1c5b1e1d64a27;

using Cxx = import "/capnp/c++.capnp";
$Cxx.namespace("PeerStructures");

struct Node {
  key @0 :Int32;
  union {
    integer @1 :Int32;
    integer64 @2 :Int64;
    number @3 :Float64;
    boolean @4 :Bool;
    text @5 :Text;
    guid @6 :Data;
    vector @7 :List(Node);
    map @8 :List(Node);
    integers @9 :List(Int32);
  }
}
