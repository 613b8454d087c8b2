// The catalog: invented titles and the colors of their posters.
var catalogue = (function () {
  'use strict';

  // id, title, genre, cast, year, minutes, two colors of the poster.
  var rows = [
    ['harbour', 'The Last Harbour', 'drama', 'Mara Lind', 2021, 112, '#0b486b', '#f56217'],
    ['orbit', 'Slow Orbit', 'science fiction', 'Idris Vale', 2024, 138, '#141e30', '#6a82fb'],
    ['kettle', 'Kettle & Crown', 'comedy', 'Jo Abernathy', 2019, 96, '#b24592', '#f9d423'],
    ['fen', 'A Light on the Fen', 'thriller', 'Mara Lind', 2022, 104, '#0f2027', '#2c9c6a'],
    ['paper', 'Paper Giants', 'comedy', 'Sol Okafor', 2023, 89, '#e65c00', '#f9d423'],
    ['north', 'North of Nowhere', 'western', 'Hale Brandt', 1998, 121, '#603813', '#dbb179'],
    ['tin', 'The Tin Cartographer', 'animation', 'Sol Okafor', 2020, 82, '#1d976c', '#93f9b9'],
    ['static', 'Static Bloom', 'thriller', 'Idris Vale', 1994, 99, '#42275a', '#d76d77'],
    ['salt', 'Salt Road', 'drama', 'Hale Brandt', 1991, 127, '#8e0e00', '#e8a87c'],
    ['comet', 'My Neighbour the Comet', 'comedy', 'Jo Abernathy', 1996, 93, '#2b5876', '#ff9a9e'],
    ['moth', 'Moth Season', 'drama', 'Ines Duarte', 2018, 108, '#304352', '#d7d2cc'],
    ['glass', 'Glass Rivers', 'documentary', 'Ines Duarte', 2025, 75, '#005c97', '#36d1dc'],
  ];

  var titles = rows.map(function (row) {
    return {
      id: row[0],
      title: row[1],
      genre: row[2],
      cast: row[3],
      year: row[4],
      minutes: row[5],
      poster: 'linear-gradient(160deg, ' + row[6] + ', ' + row[7] + ')',
    };
  });

  function byId(id) {
    return titles.filter(function (entry) {
      return entry.id === id;
    })[0];
  }

  function contains(text, part) {
    return String(text).toLowerCase().indexOf(String(part).toLowerCase()) >= 0;
  }

  // The titles that match all members of `wanted`; undefined members match everything.
  function find(wanted) {
    return titles.filter(function (entry) {
      return (
        (!wanted.title || contains(entry.title, wanted.title)) &&
        (!wanted.genre || contains(entry.genre, wanted.genre)) &&
        (!wanted.cast || contains(entry.cast, wanted.cast)) &&
        (!wanted.from || entry.year >= Number(wanted.from)) &&
        (!wanted.to || entry.year <= Number(wanted.to))
      );
    });
  }

  return {
    titles: titles,
    byId: byId,
    find: find,
    shelves: [
      { name: 'Continue with', ids: ['harbour', 'orbit', 'kettle', 'fen', 'paper', 'north'] },
      { name: 'For a quiet evening', ids: ['moth', 'glass', 'salt', 'tin', 'static', 'comet'] },
    ],
  };
})();
